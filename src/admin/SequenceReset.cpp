#include "admin/SequenceReset.h"

#include "baskets/OrdinaryError.h"
#include "common/Conversions.h"
#include "storage/SettingsKeys.h"
#include "storage/clsIniFile.h"

#include <string>

namespace wicker {
namespace {

struct SequenceKey {
    std::string_view key;
    const char* message;
};

constexpr SequenceKey kBasket{keys::kBasketNum, "Next Basket Squence Number will be: "};
constexpr SequenceKey kTrade{keys::kSeqNum, "Next Trade Squence Number will be: "};
constexpr const char* kTitle = "Sequence Reset";

// The text goes to the file as typed: the next start reads it back with the settings'
// own conversion, as it reads any hand-edited value.
bool StoreTyped(const std::filesystem::path& appFolder, std::string_view key,
                std::string_view typed, MessageBoxes& boxes) {
    const auto file = appFolder / std::string(keys::kSettingsFile);
    clsIniFile ini;
    ini.setPath(file);
    ini.setSection(std::string(keys::kSequence));
    ini.setKey(std::string(key));
    ini.setValue(typed);
    if (ini.Success()) {
        return true;
    }
    boxes.show("The setting " + std::string(keys::kSequence) + " / " + std::string(key) +
                   " could not be saved to " + file.string() + "." +
                   (ini.LastError().empty() ? "" : " " + ini.LastError()),
               48, kTitle);
    return false;
}

std::optional<int16_t> SetSequence(const std::filesystem::path& appFolder, const SequenceKey& which,
                                   std::string_view typed, MessageBoxes& boxes) {
    int16_t number = 0;
    try {
        number = CInt(Val(typed));
    } catch (const std::exception& e) {
        // Converted before anything is written, so a number too large changes nothing.
        ShowOrdinaryError(boxes, e);
        return std::nullopt;
    }
    if (!StoreTyped(appFolder, which.key, typed, boxes)) {
        return std::nullopt;
    }
    return number;
}

} // namespace

std::optional<int16_t> SetBasketSequence(const std::filesystem::path& appFolder,
                                         SendSequence& sequence, std::string_view typed,
                                         MessageBoxes& boxes) {
    const auto number = SetSequence(appFolder, kBasket, typed, boxes);
    if (number) {
        sequence.setBasketSeq(*number);
        boxes.show(kBasket.message + std::to_string(*number), 0, kTitle);
    }
    return number;
}

std::optional<int16_t> SetTradeSequence(const std::filesystem::path& appFolder,
                                        SendSequence& sequence, std::string_view typed,
                                        MessageBoxes& boxes) {
    const auto number = SetSequence(appFolder, kTrade, typed, boxes);
    if (number) {
        sequence.setOrderSeq(*number);
        boxes.show(kTrade.message + std::to_string(*number), 0, kTitle);
    }
    return number;
}

} // namespace wicker
