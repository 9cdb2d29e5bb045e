#pragma once

class QWidget;

namespace wicker {

class Platform;
class TradingDesk;

/// Help / About: the About box with the facts of this run.
void ShowAbout(const TradingDesk& desk, const Platform& platform, QWidget* parent);

} // namespace wicker
