#include "trading/ui/frmModifyOrder.h"

#include "common/Conversions.h"
#include "platform/OrderTicket.h"

#include <QComboBox>
#include <QFormLayout>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QVBoxLayout>

namespace wicker {

namespace {

QString Q(const std::string& s) {
    return QString::fromStdString(s);
}

} // namespace

frmModifyOrder::frmModifyOrder(OrderWindowsContext ctx, int32_t orderRecordId, QWidget* parent)
    : QDialog(parent), m_ctx(ctx), m_recordId(orderRecordId) {
    setObjectName(QStringLiteral("frmModifyOrder"));
    setWindowTitle(QStringLiteral("Modify Order"));

    const OrderUpdate* order = m_ctx.desk.Tracker().FindOrder(orderRecordId);
    m_lblOrder = new QLabel(this);
    m_lblOrder->setObjectName(QStringLiteral("lblOrder"));
    auto* lblFilled = new QLabel(this);
    lblFilled->setObjectName(QStringLiteral("lblFilled"));
    m_txtQuantity = new QLineEdit(this);
    m_txtQuantity->setObjectName(QStringLiteral("txtQuantity"));
    m_txtPrice = new QLineEdit(this);
    m_txtPrice->setObjectName(QStringLiteral("txtPrice"));
    m_cboPriceType = new QComboBox(this);
    m_cboPriceType->setObjectName(QStringLiteral("cboPriceType"));
    m_cboPriceType->addItem(QStringLiteral("Limit"));
    m_cboPriceType->addItem(QStringLiteral("Market"));
    if (order != nullptr) {
        m_lblOrder->setText(Q(OrderDescription(*order) + "  " + order->m_strDestination.str() +
                              "  " + order->m_strClOrderId));
        lblFilled->setText(Q("Filled " + std::to_string(order->m_nCumExecQuantity) + ", open " +
                             std::to_string(order->m_nLvsQuantity)));
        m_txtQuantity->setText(Q(std::to_string(order->m_nQuantity)));
        const bool limit = order->m_nPriceType == OrderPriceType::Limit;
        m_txtPrice->setText(limit ? Q(NumberText(order->m_fLmtPrice)) : QString());
        m_cboPriceType->setCurrentIndex(limit ? 0 : 1);
    }

    m_cmdOK = new QPushButton(QStringLiteral("OK"), this);
    m_cmdOK->setObjectName(QStringLiteral("cmdOK"));
    m_cmdOK->setDefault(true);
    m_cmdCancel = new QPushButton(QStringLiteral("Cancel"), this);
    m_cmdCancel->setObjectName(QStringLiteral("cmdCancel"));

    auto* form = new QFormLayout();
    form->addRow(QStringLiteral("Order:"), m_lblOrder);
    form->addRow(QString(), lblFilled);
    form->addRow(QStringLiteral("Quantity:"), m_txtQuantity);
    form->addRow(QStringLiteral("Price Type:"), m_cboPriceType);
    form->addRow(QStringLiteral("Price:"), m_txtPrice);
    auto* buttons = new QHBoxLayout();
    buttons->addStretch(1);
    buttons->addWidget(m_cmdOK);
    buttons->addWidget(m_cmdCancel);
    auto* outer = new QVBoxLayout(this);
    outer->addLayout(form);
    outer->addLayout(buttons);

    connect(m_cmdOK, &QPushButton::clicked, this, [this] { cmdOK_Click(); });
    connect(m_cmdCancel, &QPushButton::clicked, this, &QDialog::reject);
    connect(m_txtQuantity, &QLineEdit::returnPressed, this, [this] { cmdOK_Click(); });
    connect(m_txtPrice, &QLineEdit::returnPressed, this, [this] { cmdOK_Click(); });
    connect(m_cboPriceType, &QComboBox::currentIndexChanged, this, [this] { PriceTypeChanged(); });
    PriceTypeChanged();
}

void frmModifyOrder::PriceTypeChanged() {
    m_txtPrice->setEnabled(m_cboPriceType->currentIndex() == 0);
}

ModifyResult::Outcome frmModifyOrder::cmdOK_Click() {
    OrderChangeInput input;
    input.quantity = m_txtQuantity->text().toStdString();
    input.price = m_txtPrice->text().toStdString();
    input.priceType =
        m_cboPriceType->currentIndex() == 0 ? ModifyPriceType::Limit : ModifyPriceType::Market;
    OrderReplace replace = m_ctx.MakeReplace();
    OrderModify modify(replace, m_ctx.desk.Tracker(), m_ctx.boxes);
    const ModifyResult result =
        modify.ModifyOrder(m_recordId, input, m_ctx.desk.settings().beforeChange);
    using O = ModifyResult::Outcome;
    switch (result.outcome) {
    case O::Changed:
        accept();
        break;
    case O::NotOpen:
        reject();
        break;
    case O::Invalid:
    case O::Unchanged:
        if (result.focus == ModifyResult::Field::Price) {
            m_txtPrice->setFocus();
            m_txtPrice->selectAll();
        } else {
            m_txtQuantity->setFocus();
            m_txtQuantity->selectAll();
        }
        break;
    case O::NotConfirmed:
    case O::Refused:
    case O::NotSent:
        break; // the terms stay for another try
    }
    return result.outcome;
}

} // namespace wicker
