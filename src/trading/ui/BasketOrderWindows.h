#pragma once

#include "trading/orders/BasketCancel.h"
#include "trading/orders/BasketModify.h"
#include "trading/orders/ModifyClOrderIds.h"
#include "trading/orders/OrderSummary.h"
#include "trading/ui/OrderWindowsContext.h"

#include <functional>
#include <optional>
#include <vector>

#include <QObject>
#include <QPointer>

class QAbstractItemView;
class QMenu;
class QWidget;

namespace wicker {

class frmBasketDetails;
class frmModifyBasket;

/// The main screen's ways into the orders of one send: double-click on a line of
/// lvBaskets, and on "Basket Options" "Order Summary...", "Modify Basket..." and
/// "Change Selected Basket to MKT". Owns the run's change-id issuer.
class BasketOrderWindows final : public QObject {
    Q_OBJECT

public:
    using Selection = std::function<std::optional<BasketListSelection>()>;

    /// Adds its items to `basketOptions` and listens to double-clicks on `lvBaskets`;
    /// `selected` gives the chosen lvBaskets line. Windows open over `window`.
    BasketOrderWindows(TradingDesk& desk, QVXOrderMaintenance& maintenance, MessageBoxes& boxes,
                       QAbstractItemView& lvBaskets, QMenu& basketOptions, Selection selected,
                       QWidget& window);

    /// Opens the summary of a send (or brings its open one forward).
    frmBasketDetails* OpenSummary(const BasketSend& send);
    /// "Modify Basket..." for the selected line: the dialog (window-modal, not blocking).
    frmModifyBasket* OpenModifyBasket();
    /// "Change Selected Basket to MKT".
    std::optional<BasketModifyReport> ChangeSelectedToMarket();
    /// The summary windows open now.
    std::vector<frmBasketDetails*> OpenSummaries() const;

private:
    std::optional<BasketSend> SelectedSend() const;
    OrderWindowsContext Context() { return {m_desk, m_maintenance, m_boxes, m_ids}; }

    TradingDesk& m_desk;
    QVXOrderMaintenance& m_maintenance;
    MessageBoxes& m_boxes;
    QAbstractItemView& m_lvBaskets;
    Selection m_selected;
    QWidget& m_window;
    ModifyIdIssuer m_ids;
    std::vector<QPointer<frmBasketDetails>> m_summaries;
};

} // namespace wicker
