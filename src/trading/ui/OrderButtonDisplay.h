#pragma once

#include "trading/orders/ExecutionButtons.h"

#include <array>
#include <cstdint>
#include <string_view>

#include <QColor>
#include <QPalette>

namespace wicker {

/// The side an order button trades, for its colour and its row on the screen.
enum class ButtonSide { Buy, Sell, Short };

ButtonSide SideOfButton(int index);

/// The order buttons of one side, left to right as the screen shows them: bid, ask, last,
/// market, market-on-open, market-on-close, then the button at the line's own price.
std::array<int, 7> ButtonRow(ButtonSide side);

/// Which order buttons "ButtonsDisplay"/"Buttons" shows. Its first 18 characters are three
/// groups (buy, sell, short) of BID, ASK, LAST, MKT, MOO, MOC; a character other than "0"
/// shows the button, a missing one too. The three price buttons are always shown: the
/// trailing flags belong to the general settings, and the price buttons' availability is
/// the order-button mode's business.
std::array<bool, ExecuteButtonCount> ButtonsShown(std::string_view buttons);

/// A colour as the settings keep it: 0x80000000 + n is system colour n (15, the button
/// face, and the few others the screens use), anything else 0x00BBGGRR.
QColor ColorFromSetting(int32_t value, const QPalette& palette);

} // namespace wicker
