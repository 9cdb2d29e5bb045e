#pragma once

#include "trading/orders/OrderModify.h"
#include "trading/ui/OrderWindowsContext.h"

#include <cstdint>

#include <QDialog>

class QComboBox;
class QLabel;
class QLineEdit;
class QPushButton;

namespace wicker {

/// Changes one open order: new quantity, price and price type (limit or market), sent as
/// one cancel-replace. Stays open when the input is refused or the trader says No, so the
/// terms can be corrected; closes once the change went out or the order is gone.
class frmModifyOrder final : public QDialog {
    Q_OBJECT

public:
    frmModifyOrder(OrderWindowsContext ctx, int32_t orderRecordId, QWidget* parent = nullptr);

    /// The OK button: returns how the modify ended.
    ModifyResult::Outcome cmdOK_Click();

private:
    void PriceTypeChanged();

    OrderWindowsContext m_ctx;
    int32_t m_recordId;
    QLabel* m_lblOrder = nullptr;
    QLineEdit* m_txtQuantity = nullptr;
    QLineEdit* m_txtPrice = nullptr;
    QComboBox* m_cboPriceType = nullptr;
    QPushButton* m_cmdOK = nullptr;
    QPushButton* m_cmdCancel = nullptr;
};

} // namespace wicker
