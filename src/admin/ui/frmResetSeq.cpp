#include "admin/ui/frmResetSeq.h"

#include "admin/SequenceReset.h"
#include "baskets/ui/KeyFilters.h"
#include "baskets/ui/UiText.h"

#include <algorithm>

#include <QGridLayout>
#include <QGroupBox>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QPalette>
#include <QPushButton>
#include <QVBoxLayout>

namespace wicker {
namespace {

QLineEdit* Box(QWidget* parent, const char* name) {
    auto* box = new QLineEdit(parent);
    box->setObjectName(QString::fromLatin1(name));
    return box;
}

// The labels, boxes and buttons of both frames line up: the same label width, box width
// and button width in each.
struct FrameSizes {
    int label = 0;
    int button = 0;
};

// One frame: the next number (shown only), the box for the new one and its button.
QGroupBox* Frame(QWidget* parent, const QString& caption, const QString& nextLabel, QLineEdit* next,
                 const QString& setLabel, QLineEdit* set, QPushButton* button,
                 const FrameSizes& sizes) {
    auto* frame = new QGroupBox(caption, parent);
    auto* grid = new QGridLayout(frame);
    const auto label = [&](const QString& text, QLineEdit* buddy) {
        auto* l = new QLabel(text, frame);
        l->setFixedWidth(sizes.label);
        l->setBuddy(buddy);
        return l;
    };
    grid->addWidget(label(nextLabel, next), 0, 0);
    grid->addWidget(next, 0, 1);
    grid->addWidget(label(setLabel, set), 1, 0);
    grid->addWidget(set, 1, 1);
    button->setFixedWidth(sizes.button);
    grid->addWidget(button, 1, 2);
    grid->setColumnStretch(1, 1);
    return frame;
}

// A number the trader reads but does not type: no caret, out of the tab order, drawn on
// the window's colour so it does not look like a box to fill in.
void ShowOnly(QLineEdit& box) {
    box.setReadOnly(true);
    box.setFocusPolicy(Qt::NoFocus);
    QPalette palette = box.palette();
    palette.setColor(QPalette::Base, palette.color(QPalette::Window));
    box.setPalette(palette);
}

} // namespace

frmResetSeq::frmResetSeq(MessageBoxes& boxes, SendSequence& sequence,
                         std::filesystem::path appFolder, QWidget* parent)
    : QDialog(parent), m_boxes(boxes), m_sequence(sequence), m_appFolder(std::move(appFolder)),
      m_nextBasket(Box(this, "txtNextBasketNo")), m_setBasket(Box(this, "txtSetBasketNo")),
      m_nextTrade(Box(this, "txtNextTradeNum")), m_setTrade(Box(this, "txtSetTradeNum")) {
    setObjectName(QStringLiteral("frmResetSeq"));
    setWindowTitle(QStringLiteral("Reset Basket/Trade Sequence Number"));
    // Wide enough that the window manager shows the whole title.
    constexpr int kTitleBarButtons = 150;
    setMinimumWidth(fontMetrics().horizontalAdvance(windowTitle()) * 5 / 4 + kTitleBarButtons);
    ShowOnly(*m_nextBasket);
    ShowOnly(*m_nextTrade);

    auto* setBasket = new QPushButton(QStringLiteral("Set Basket No"), this);
    setBasket->setObjectName(QStringLiteral("cmdSetBasNum"));
    auto* setTrade = new QPushButton(QStringLiteral("Set Trade No"), this);
    setTrade->setObjectName(QStringLiteral("cmdSetTradeNum"));
    auto* close = new QPushButton(QStringLiteral("Close"), this);
    close->setObjectName(QStringLiteral("cmdClose"));
    for (auto* b : {setBasket, setTrade, close}) {
        b->setAutoDefault(false);
    }

    const QString labels[] = {
        QStringLiteral("Next Basket Seq No is:"), QStringLiteral("Set Basket Seq No to:"),
        QStringLiteral("Next Trade Seq No is:"), QStringLiteral("Set Trade Seq No to:")};
    FrameSizes sizes;
    for (const QString& text : labels) {
        sizes.label = std::max(sizes.label, fontMetrics().horizontalAdvance(text) + 8);
    }
    sizes.button = std::max(setBasket->sizeHint().width(), setTrade->sizeHint().width());

    auto* buttons = new QHBoxLayout;
    buttons->addStretch();
    buttons->addWidget(close);
    auto* layout = new QVBoxLayout(this);
    layout->addWidget(Frame(this, QStringLiteral("Set Basket Sequence Number"), labels[0],
                            m_nextBasket, labels[1], m_setBasket, setBasket, sizes));
    layout->addWidget(Frame(this, QStringLiteral("Set Trade Sequence Number"), labels[2],
                            m_nextTrade, labels[3], m_setTrade, setTrade, sizes));
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
