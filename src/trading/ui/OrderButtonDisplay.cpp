#include "trading/ui/OrderButtonDisplay.h"

namespace wicker {
namespace {

// Button index of each "Buttons" character within a side's group of six:
// BID, ASK, LAST, MKT, MOO, MOC.
constexpr std::array<std::array<int, 6>, 3> kGroups{{
    {0, 1, 2, 3, 17, 12},  // buy
    {4, 5, 6, 7, 16, 13},  // sell
    {8, 9, 10, 11, 15, 14} // short
}};
constexpr std::array<int, 3> kPriceButtons{18, 19, 20};

size_t SideIndex(ButtonSide side) {
    return static_cast<size_t>(side);
}

} // namespace

ButtonSide SideOfButton(int index) {
    for (size_t s = 0; s < kGroups.size(); ++s) {
        for (int i : kGroups[s]) {
            if (i == index) {
                return static_cast<ButtonSide>(s);
            }
        }
        if (kPriceButtons[s] == index) {
            return static_cast<ButtonSide>(s);
        }
    }
    return ButtonSide::Buy;
}

std::array<int, 7> ButtonRow(ButtonSide side) {
    const auto& g = kGroups[SideIndex(side)];
    return {g[0], g[1], g[2], g[3], g[4], g[5], kPriceButtons[SideIndex(side)]};
}

std::array<bool, ExecuteButtonCount> ButtonsShown(std::string_view buttons) {
    std::array<bool, ExecuteButtonCount> shown{};
    shown.fill(true);
    for (size_t s = 0; s < kGroups.size(); ++s) {
        for (size_t k = 0; k < kGroups[s].size(); ++k) {
            const size_t pos = s * 6 + k;
            if (pos < buttons.size() && buttons[pos] == '0') {
                shown[static_cast<size_t>(kGroups[s][k])] = false;
            }
        }
    }
    return shown;
}

QColor ColorFromSetting(int32_t value, const QPalette& palette) {
    const auto bits = static_cast<uint32_t>(value);
    if ((bits & 0x80000000u) != 0) {
        switch (bits & 0xFFu) {
        case 5: // window background
            return palette.color(QPalette::Base);
        case 8: // window text
            return palette.color(QPalette::Text);
        case 13: // highlight
            return palette.color(QPalette::Highlight);
        case 18: // button text
            return palette.color(QPalette::ButtonText);
        default: // 15, the button face, and every system colour the screens never use
            return palette.color(QPalette::Button);
        }
    }
    return QColor(static_cast<int>(bits & 0xFFu), static_cast<int>((bits >> 8) & 0xFFu),
                  static_cast<int>((bits >> 16) & 0xFFu));
}

} // namespace wicker
