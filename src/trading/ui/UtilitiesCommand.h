#pragma once

class QWidget;

namespace wicker {

class MessageBoxes;
class TradingDesk;

/// "&Utilities...": the utilities screen, modal, over the desk's database, trading data and
/// send numbers. Does nothing before the desk has started.
void OpenUtilities(TradingDesk& desk, MessageBoxes& boxes, QWidget* parent);

} // namespace wicker
