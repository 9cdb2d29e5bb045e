#pragma once

#include "trading/orders/OrderSummary.h"
#include "trading/ui/OrderWindowsContext.h"

#include <cstdint>

#include <QDialog>

class QPushButton;
class QTableView;

namespace wicker {

class OrderSummaryModel;

/// The order summary of one basket send: every order with its state, refreshed by the
/// main screen's one-second timer while the window is open (it registers with the order
/// tracker and leaves when it closes). Non-modal; several may be open. Cancels or modifies
/// the selected order.
class frmBasketDetails final : public QDialog {
    Q_OBJECT

public:
    frmBasketDetails(OrderWindowsContext ctx, BasketSend send, QWidget* parent = nullptr);
    ~frmBasketDetails() override;

    const BasketSend& send() const { return m_send; }
    OrderSummaryModel& model() const { return *m_model; }

    /// Reads the send's orders again (the tracker calls it).
    void FillList();
    /// "Cancel Order" on the selected line; true when a request was sent.
    bool cmdCancelOrder_Click();
    /// "Modify Order..." on the selected line: opens frmModifyOrder (window-modal, not
    /// blocking); null when no order is selected.
    QDialog* cmdModifyOrder_Click();
    /// Record id of the selected order; 0 when none.
    int32_t SelectedRecordId() const;

private:
    OrderWindowsContext m_ctx;
    BasketSend m_send;
    int m_handle = 0;
    OrderSummaryModel* m_model = nullptr;
    QTableView* m_lvOrders = nullptr;
    QPushButton* m_cmdCancelOrder = nullptr;
    QPushButton* m_cmdModifyOrder = nullptr;
    QPushButton* m_cmdClose = nullptr;
};

} // namespace wicker
