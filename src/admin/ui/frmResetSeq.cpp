#include "admin/ui/frmResetSeq.h"

#include "admin/SequenceReset.h"
#include "baskets/ui/KeyFilters.h"
#include "baskets/ui/UiText.h"

#include <QFormLayout>
#include <QGroupBox>
#include <QHBoxLayout>
#include <QLineEdit>
#include <QPushButton>
#include <QVBoxLayout>

namespace wicker {
namespace {

QLineEdit* Box(QWidget* parent, const char* name) {
    auto* box = new QLineEdit(parent);
    box->setObjectName(QString::fromLatin1(name));
    return box;
}

// One frame: the next number (shown only), the box for the new one and its button.
QGroupBox* Frame(QWidget* parent, const QString& caption, const QString& nextLabel, QLineEdit* next,
                 const QString& setLabel, QLineEdit* set, QPushButton* button) {
    auto* frame = new QGroupBox(caption, parent);
    auto* form = new QFormLayout;
    form->addRow(nextLabel, next);
    form->addRow(setLabel, set);
    auto* layout = new QHBoxLayout(frame);
    layout->addLayout(form);
    layout->addWidget(button, 0, Qt::AlignBottom);
    return frame;
}

} // namespace

frmResetSeq::frmResetSeq(MessageBoxes& boxes, SendSequence& sequence,
                         std::filesystem::path appFolder, QWidget* parent)
    : QDialog(parent), m_boxes(boxes), m_sequence(sequence), m_appFolder(std::move(appFolder)),
      m_nextBasket(Box(this, "txtNextBasketNo")), m_setBasket(Box(this, "txtSetBasketNo")),
      m_nextTrade(Box(this, "txtNextTradeNum")), m_setTrade(Box(this, "txtSetTradeNum")) {
    setObjectName(QStringLiteral("frmResetSeq"));
    setWindowTitle(QStringLiteral("Reset Basket/Trade Sequence Number"));
    m_nextBasket->setReadOnly(true);
    m_nextTrade->setReadOnly(true);

    auto* setBasket = new QPushButton(QStringLiteral("Set Basket No"), this);
    setBasket->setObjectName(QStringLiteral("cmdSetBasNum"));
    auto* setTrade = new QPushButton(QStringLiteral("Set Trade No"), this);
    setTrade->setObjectName(QStringLiteral("cmdSetTradeNum"));
    auto* close = new QPushButton(QStringLiteral("Close"), this);
    close->setObjectName(QStringLiteral("cmdClose"));
    for (auto* b : {setBasket, setTrade, close}) {
        b->setAutoDefault(false);
    }

    auto* buttons = new QHBoxLayout;
    buttons->addStretch();
    buttons->addWidget(close);
    auto* layout = new QVBoxLayout(this);
    layout->addWidget(Frame(this, QStringLiteral("Set Basket Sequence Number"),
                            QStringLiteral("Next Basket Seq No is:"), m_nextBasket,
                            QStringLiteral("Set Basket Seq No to:"), m_setBasket, setBasket));
    layout->addWidget(Frame(this, QStringLiteral("Set Trade Sequence Number"),
                            QStringLiteral("Next Trade Seq No is:"), m_nextTrade,
                            QStringLiteral("Set Trade Seq No to:"), m_setTrade, setTrade));
    layout->addLayout(buttons);

    // Enter in a "set" box presses the button of its own frame.
    (new EnterPressesButton(setBasket, this))->watch(m_setBasket);
    (new EnterPressesButton(setTrade, this))->watch(m_setTrade);
    connect(setBasket, &QPushButton::clicked, this, &frmResetSeq::setBasketNumber);
    connect(setTrade, &QPushButton::clicked, this, &frmResetSeq::setTradeNumber);
    connect(close, &QPushButton::clicked, this, &QDialog::accept);

    m_nextBasket->setText(QString::number(m_sequence.BasketSeq()));
    m_nextTrade->setText(QString::number(m_sequence.OrderSeq()));
}

void frmResetSeq::setBasketNumber() {
    if (const auto n =
            SetBasketSequence(m_appFolder, m_sequence, ToStd(m_setBasket->text()), m_boxes)) {
        m_nextBasket->setText(QString::number(*n));
    }
}

void frmResetSeq::setTradeNumber() {
    if (const auto n =
            SetTradeSequence(m_appFolder, m_sequence, ToStd(m_setTrade->text()), m_boxes)) {
        m_nextTrade->setText(QString::number(*n));
    }
}

} // namespace wicker
