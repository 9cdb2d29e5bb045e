#pragma once

#include "common/MessageBox.h"

#include <exception>
#include <string>

namespace wicker {

/// Text of an error that no handler of a screen expected, as the old runtime showed it:
/// "Run-time error '13':" a blank line and the description. Provider errors keep their
/// negative number with its hexadecimal form: "Run-time error '-2147467259 (80004005)':".
/// An error without a number (0) shows its description alone.
std::string OrdinaryErrorText(const std::exception& error);

/// Number the error carries (RuntimeError, DbError), 0 for any other exception.
int ErrorNumber(const std::exception& error);

/// Shows OrdinaryErrorText with the program's default title and a critical icon.
void ShowOrdinaryError(MessageBoxes& boxes, const std::exception& error);

} // namespace wicker
