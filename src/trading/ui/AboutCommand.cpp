#include "trading/ui/AboutCommand.h"

#include "common/ui/frmAbout.h"
#include "platform/Platform.h"
#include "storage/Database.h"
#include "trading/TradingDesk.h"

namespace wicker {

void ShowAbout(const TradingDesk& desk, const Platform& platform, QWidget* parent) {
    ProgramFacts facts = RuntimeFacts();
    facts.dataFolder = desk.AppFolder().string();
    facts.platform = platform.DisplayName();
    facts.platformDetails = platform.Details();
    facts.sqliteVersion = SqliteVersion();
    frmAbout about(std::move(facts), parent);
    about.exec();
}

} // namespace wicker
