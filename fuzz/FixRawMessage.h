// Raw FIX bytes as the session would hand them on. Shared by the C++14 QuickFIX side and
// the C++20 harness, so it includes neither QuickFIX nor anything newer than C++14.
#pragma once

#include "platform/fix/engine/FixWire.h"

#include <string>

namespace wicker {
namespace fuzz {

/// Parses one framed FIX message (8=...|9=...|...|10=...) the way QuickFIX parses what it
/// receives, with the market-data groups declared; false when QuickFIX refuses it.
bool ParseRawFix(const std::string& bytes, FixMessage& out);

} // namespace fuzz
} // namespace wicker
