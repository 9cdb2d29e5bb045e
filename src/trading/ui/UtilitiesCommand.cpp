#include "trading/ui/UtilitiesCommand.h"

#include "admin/MainTradingDataReset.h"
#include "admin/ui/frmUtils.h"
#include "trading/TradingDesk.h"

namespace wicker {

void OpenUtilities(TradingDesk& desk, MessageBoxes& boxes, QWidget* parent) {
    if (!desk.Loaded()) {
        return;
    }
    MainTradingDataReset trading(desk);
    frmUtils dialog(desk.db(), boxes, trading, desk.Sequence(), desk.AppFolder(), parent);
    dialog.exec();
}

} // namespace wicker
