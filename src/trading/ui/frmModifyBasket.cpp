#include "trading/ui/frmModifyBasket.h"

#include <QFormLayout>
#include <QGroupBox>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QRadioButton>
#include <QVBoxLayout>

namespace wicker {

BasketModifyReport RunBasketModify(const OrderWindowsContext& ctx, const BasketSend& send,
                                   const BasketChangeTo& changeTo) {
    OrderReplace replace = ctx.MakeReplace();
    BasketModify modify(replace, ctx.desk.Tracker(), ctx.desk.Quotes(), ctx.boxes);
    return modify.ModifyBasket(send, changeTo, ctx.desk.settings().beforeChange);
}

frmModifyBasket::frmModifyBasket(OrderWindowsContext ctx, BasketSend send, QWidget* parent)
    : QDialog(parent), m_ctx(ctx), m_send(std::move(send)) {
    setObjectName(QStringLiteral("frmModifyBasket"));
    setWindowTitle(QString::fromStdString("Modify Basket - " + m_send.basketName + " #" +
                                          std::to_string(m_send.basketSeq)));

    auto* group = new QGroupBox(QStringLiteral("Change open orders to"), this);
    const auto option = [group](const char* name, const char* caption) {
        auto* b = new QRadioButton(QString::fromLatin1(caption), group);
        b->setObjectName(QString::fromLatin1(name));
        return b;
    };
    m_optBid = option("optBid", "Bid");
    m_optAsk = option("optAsk", "Ask");
    m_optLast = option("optLast", "Last");
    m_optMarket = option("optMarket", "Market");
    m_optBid->setChecked(true);
    auto* choices = new QVBoxLayout(group);
    for (QRadioButton* b : {m_optBid, m_optAsk, m_optLast, m_optMarket}) {
        choices->addWidget(b);
    }

    m_txtModifier = new QLineEdit(QStringLiteral("0"), this);
    m_txtModifier->setObjectName(QStringLiteral("txtModifier"));
    m_cmdOK = new QPushButton(QStringLiteral("OK"), this);
    m_cmdOK->setObjectName(QStringLiteral("cmdOK"));
    m_cmdOK->setDefault(true);
    m_cmdCancel = new QPushButton(QStringLiteral("Cancel"), this);
    m_cmdCancel->setObjectName(QStringLiteral("cmdCancel"));

    auto* form = new QFormLayout();
    form->addRow(QStringLiteral("Modifier:"), m_txtModifier);
    auto* buttons = new QHBoxLayout();
    buttons->addStretch(1);
    buttons->addWidget(m_cmdOK);
    buttons->addWidget(m_cmdCancel);
    auto* outer = new QVBoxLayout(this);
    outer->addWidget(group);
    outer->addLayout(form);
    outer->addLayout(buttons);

    connect(m_optMarket, &QRadioButton::toggled, m_txtModifier, &QWidget::setDisabled);
    connect(m_cmdOK, &QPushButton::clicked, this, [this] { cmdOK_Click(); });
    connect(m_txtModifier, &QLineEdit::returnPressed, this, [this] { cmdOK_Click(); });
    connect(m_cmdCancel, &QPushButton::clicked, this, &QDialog::reject);
}

std::optional<BasketModifyReport> frmModifyBasket::cmdOK_Click() {
    BasketChangeTo to;
    to.basis = m_optBid->isChecked()    ? ChangeBasis::Bid
               : m_optAsk->isChecked()  ? ChangeBasis::Ask
               : m_optLast->isChecked() ? ChangeBasis::Last
                                        : ChangeBasis::Market;
    to.modifier = m_txtModifier->text().toStdString();
    const BasketModifyReport report = RunBasketModify(m_ctx, m_send, to);
    using O = BasketModifyReport::Outcome;
    if (report.outcome == O::BadModifier) {
        m_txtModifier->setFocus();
        m_txtModifier->selectAll();
        return std::nullopt;
    }
    if (report.outcome == O::NotConfirmed) {
        return std::nullopt;
    }
    accept();
    return report;
}

} // namespace wicker
