#include "trading/ui/frmBasketDetails.h"

#include "trading/orders/OrderCancel.h"
#include "trading/ui/OrderSummaryModel.h"
#include "trading/ui/frmModifyOrder.h"

#include <QHBoxLayout>
#include <QHeaderView>
#include <QPushButton>
#include <QTableView>
#include <QVBoxLayout>

namespace wicker {

frmBasketDetails::frmBasketDetails(OrderWindowsContext ctx, BasketSend send, QWidget* parent)
    : QDialog(parent), m_ctx(ctx), m_send(std::move(send)) {
    setObjectName(QStringLiteral("frmBasketDetails"));
    setWindowTitle(QString::fromStdString("Order Summary - " + m_send.basketName + " #" +
                                          std::to_string(m_send.basketSeq)));
    setModal(false);

    m_model = new OrderSummaryModel(this);
    m_lvOrders = new QTableView(this);
    m_lvOrders->setObjectName(QStringLiteral("lvOrders"));
    m_lvOrders->setModel(m_model);
    m_lvOrders->setSelectionBehavior(QAbstractItemView::SelectRows);
    m_lvOrders->setSelectionMode(QAbstractItemView::SingleSelection);
    m_lvOrders->setEditTriggers(QAbstractItemView::NoEditTriggers);
    m_lvOrders->verticalHeader()->hide();
    // Fixed row heights: thousands of orders stay fluid.
    m_lvOrders->verticalHeader()->setSectionResizeMode(QHeaderView::Fixed);
    m_lvOrders->verticalHeader()->setDefaultSectionSize(m_lvOrders->fontMetrics().height() + 6);
    m_lvOrders->horizontalHeader()->setDefaultSectionSize(80);
    m_lvOrders->horizontalHeader()->setStretchLastSection(true);

    m_cmdCancelOrder = new QPushButton(QStringLiteral("Cancel Order"), this);
    m_cmdCancelOrder->setObjectName(QStringLiteral("cmdCancelOrder"));
    m_cmdModifyOrder = new QPushButton(QStringLiteral("Modify Order..."), this);
    m_cmdModifyOrder->setObjectName(QStringLiteral("cmdModifyOrder"));
    m_cmdClose = new QPushButton(QStringLiteral("Close"), this);
    m_cmdClose->setObjectName(QStringLiteral("cmdClose"));

    auto* buttons = new QHBoxLayout();
    buttons->addWidget(m_cmdCancelOrder);
    buttons->addWidget(m_cmdModifyOrder);
    buttons->addStretch(1);
    buttons->addWidget(m_cmdClose);
    auto* outer = new QVBoxLayout(this);
    outer->addWidget(m_lvOrders, 1);
    outer->addLayout(buttons);

    connect(m_cmdCancelOrder, &QPushButton::clicked, this, [this] { cmdCancelOrder_Click(); });
    connect(m_cmdModifyOrder, &QPushButton::clicked, this, [this] { cmdModifyOrder_Click(); });
    connect(m_lvOrders, &QAbstractItemView::doubleClicked, this,
            [this] { cmdModifyOrder_Click(); });
    connect(m_cmdClose, &QPushButton::clicked, this, &QWidget::close);

    FillList();
    m_handle = m_ctx.desk.Tracker().AddOrderSummaryWindow([this] { FillList(); });
    resize(900, 420);
}

frmBasketDetails::~frmBasketDetails() {
    m_ctx.desk.Tracker().RemoveOrderSummaryWindow(m_handle);
}

void frmBasketDetails::FillList() {
    m_model->setLines(
        OrderSummaryLines(m_ctx.desk.Tracker(), m_send, m_ctx.desk.settings().numDecimals));
}

int32_t frmBasketDetails::SelectedRecordId() const {
    const QModelIndexList rows = m_lvOrders->selectionModel()->selectedRows();
    return rows.isEmpty() ? 0 : m_model->recordIdAt(rows.front().row());
}

bool frmBasketDetails::cmdCancelOrder_Click() {
    const int32_t recordId = SelectedRecordId();
    if (recordId == 0) {
        m_ctx.boxes.show("Please select an order.", 48, "Order Summary");
        return false;
    }
    const bool sent = CancelSummaryOrder(m_ctx.desk.Tracker(), m_ctx.maintenance, m_ctx.boxes,
                                         recordId, m_ctx.desk.settings().beforeCancel);
    if (sent) {
        FillList(); // the zeroed leaves show at once
    }
    return sent;
}

QDialog* frmBasketDetails::cmdModifyOrder_Click() {
    const int32_t recordId = SelectedRecordId();
    if (recordId == 0) {
        m_ctx.boxes.show("Please select an order.", 48, "Order Summary");
        return nullptr;
    }
    auto* dialog = new frmModifyOrder(m_ctx, recordId, this);
    dialog->setAttribute(Qt::WA_DeleteOnClose);
    dialog->open();
    return dialog;
}

} // namespace wicker
