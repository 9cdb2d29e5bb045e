#pragma once

#include <string>
#include <string_view>

namespace wicker {

/// What a key typed into a symbol box inserts: symbols are upper case by default, so a
/// letter typed while Shift, Ctrl or Alt is held comes out lower case (the case is
/// inverted on purpose). Characters without case pass unchanged.
std::string SymbolKeyText(std::string_view typed, bool modifierHeld);

} // namespace wicker
