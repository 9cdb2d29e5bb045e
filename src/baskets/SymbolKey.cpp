#include "baskets/SymbolKey.h"

#include "common/Text.h"

namespace wicker {

std::string SymbolKeyText(std::string_view typed, bool modifierHeld) {
    return modifierHeld ? LCase(typed) : UCase(typed);
}

} // namespace wicker
