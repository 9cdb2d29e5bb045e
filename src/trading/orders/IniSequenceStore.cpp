#include "trading/orders/IniSequenceStore.h"

#include "storage/clsIniFile.h"

#include <exception>
#include <string>

namespace wicker {

Result<void> IniSequenceStore::SaveBasketNum(int16_t nextBasketSeq) {
    const std::string failed = "The basket number could not be saved to " + m_path.string() + ".";
    try {
        clsIniFile ini;
        ini.setPath(m_path);
        ini.setSection("Sequence");
        ini.setKey("BasketNum");
        ini.setValue(std::to_string(nextBasketSeq));
        if (!ini.Success()) {
            return Error{ini.LastError().empty() ? failed : failed + " " + ini.LastError()};
        }
    } catch (const std::exception& e) {
        return Error{failed + " " + e.what()};
    }
    return {};
}

} // namespace wicker
