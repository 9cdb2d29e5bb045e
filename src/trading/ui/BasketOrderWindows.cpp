#include "trading/ui/BasketOrderWindows.h"

#include "trading/orders/OrderRow.h"
#include "trading/ui/frmBasketDetails.h"
#include "trading/ui/frmModifyBasket.h"

#include <QAbstractItemView>
#include <QAction>
#include <QMenu>

namespace wicker {

BasketOrderWindows::BasketOrderWindows(TradingDesk& desk, QVXOrderMaintenance& maintenance,
                                       MessageBoxes& boxes, QAbstractItemView& lvBaskets,
                                       QMenu& basketOptions, Selection selected, QWidget& window)
    : QObject(&window), m_desk(desk), m_maintenance(maintenance), m_boxes(boxes),
      m_lvBaskets(lvBaskets), m_selected(std::move(selected)), m_window(window) {
    basketOptions.addSeparator();
    QAction* summary = basketOptions.addAction(QStringLiteral("Order Summary..."));
    summary->setObjectName(QStringLiteral("mnuOrderSummary"));
    QAction* modify = basketOptions.addAction(QStringLiteral("Modify Basket..."));
    modify->setObjectName(QStringLiteral("mnuModifyBasket"));
    QAction* toMarket = basketOptions.addAction(QStringLiteral("Change Selected Basket to MKT"));
    toMarket->setObjectName(QStringLiteral("mnuBasketToMkt"));

    connect(summary, &QAction::triggered, this, [this] {
        if (const auto send = SelectedSend()) {
            OpenSummary(*send);
        }
    });
    connect(modify, &QAction::triggered, this, [this] { OpenModifyBasket(); });
    connect(toMarket, &QAction::triggered, this, [this] { ChangeSelectedToMarket(); });
    connect(&m_lvBaskets, &QAbstractItemView::doubleClicked, this, [this](const QModelIndex& i) {
        const QAbstractItemModel* model = m_lvBaskets.model();
        const auto send =
            BasketSendOf(model->index(i.row(), colBasketNum).data().toString().toStdString(),
                         model->index(i.row(), colBasket).data().toString().toStdString());
        if (send) {
            OpenSummary(*send);
        }
    });
}

std::optional<BasketSend> BasketOrderWindows::SelectedSend() const {
    const std::optional<BasketListSelection> line = m_selected();
    if (!line || !m_desk.Loaded()) {
        return std::nullopt;
    }
    return BasketSendOf(line->basketNum, line->basketName);
}

frmBasketDetails* BasketOrderWindows::OpenSummary(const BasketSend& send) {
    if (!m_desk.Loaded()) {
        return nullptr;
    }
    for (frmBasketDetails* open : OpenSummaries()) {
        if (open->send() == send) {
            open->raise();
            open->activateWindow();
            return open;
        }
    }
    std::erase_if(m_summaries, [](const QPointer<frmBasketDetails>& w) { return w.isNull(); });
    auto* window = new frmBasketDetails(Context(), send, &m_window);
    window->setAttribute(Qt::WA_DeleteOnClose);
    m_summaries.emplace_back(window);
    window->show();
    return window;
}

frmModifyBasket* BasketOrderWindows::OpenModifyBasket() {
    const auto send = SelectedSend();
    if (!send) {
        return nullptr;
    }
    auto* dialog = new frmModifyBasket(Context(), *send, &m_window);
    dialog->setAttribute(Qt::WA_DeleteOnClose);
    dialog->open();
    return dialog;
}

std::optional<BasketModifyReport> BasketOrderWindows::ChangeSelectedToMarket() {
    const auto send = SelectedSend();
    if (!send) {
        return std::nullopt;
    }
    return RunBasketModify(Context(), *send, BasketChangeTo{ChangeBasis::Market, ""});
}

std::vector<frmBasketDetails*> BasketOrderWindows::OpenSummaries() const {
    std::vector<frmBasketDetails*> open;
    for (const auto& w : m_summaries) {
        if (w) {
            open.push_back(w.data());
        }
    }
    return open;
}

} // namespace wicker
