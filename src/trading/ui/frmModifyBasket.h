#pragma once

#include "trading/orders/BasketModify.h"
#include "trading/ui/OrderWindowsContext.h"

#include <optional>

#include <QDialog>

class QLineEdit;
class QPushButton;
class QRadioButton;

namespace wicker {

/// "Modify Basket": what every open order of one send changes to, the bid, ask or last
/// plus a modifier, or market. Closes once the orders were worked through.
class frmModifyBasket final : public QDialog {
    Q_OBJECT

public:
    frmModifyBasket(OrderWindowsContext ctx, BasketSend send, QWidget* parent = nullptr);

    /// The OK button; none when nothing was tried (bad modifier, No).
    std::optional<BasketModifyReport> cmdOK_Click();

private:
    OrderWindowsContext m_ctx;
    BasketSend m_send;
    QRadioButton* m_optBid = nullptr;
    QRadioButton* m_optAsk = nullptr;
    QRadioButton* m_optLast = nullptr;
    QRadioButton* m_optMarket = nullptr;
    QLineEdit* m_txtModifier = nullptr;
    QPushButton* m_cmdOK = nullptr;
    QPushButton* m_cmdCancel = nullptr;
};

/// Runs one Modify Basket over the desk's orders and quotes.
BasketModifyReport RunBasketModify(const OrderWindowsContext& ctx, const BasketSend& send,
                                   const BasketChangeTo& changeTo);

} // namespace wicker
