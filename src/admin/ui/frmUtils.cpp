#include "admin/ui/frmUtils.h"

#include "admin/Utilities.h"
#include "admin/ui/frmResetSeq.h"
#include "baskets/OrdinaryError.h"
#include "baskets/ui/DialogSupport.h"

#include <QGroupBox>
#include <QHBoxLayout>
#include <QPushButton>
#include <QVBoxLayout>

namespace wicker {
namespace {

QPushButton* Button(QWidget* parent, const char* name, const QString& caption) {
    auto* button = new QPushButton(caption, parent);
    button->setObjectName(QString::fromLatin1(name));
    button->setAutoDefault(false);
    return button;
}

QGroupBox* Frame(QWidget* parent, const QString& caption,
                 std::initializer_list<QPushButton*> buttons) {
    auto* frame = new QGroupBox(caption, parent);
    auto* layout = new QVBoxLayout(frame);
    for (auto* b : buttons) {
        layout->addWidget(b);
    }
    return frame;
}

} // namespace

frmUtils::frmUtils(Database& db, MessageBoxes& boxes, TradingDataReset& trading,
                   SendSequence& sequence, std::filesystem::path appFolder, QWidget* parent)
    : QDialog(parent), m_db(db), m_boxes(boxes), m_trading(trading), m_sequence(sequence),
      m_appFolder(std::move(appFolder)) {
    setObjectName(QStringLiteral("frmUtils"));
    setWindowTitle(QStringLiteral("Basket Utilities"));

    auto* test = Button(this, "cmdTestConnection", QStringLiteral("Test DB Connection"));
    auto* create = Button(this, "cmdCreateData", QStringLiteral("Create Initial Data"));
    auto* clear = Button(this, "cmdClearTradeData", QStringLiteral("Clear Trading Data"));
    auto* close = Button(this, "cmdCloseOrders", QStringLiteral("Mark All Orders as Closed"));
    auto* resetSeq = Button(this, "cmdResetSeq", QStringLiteral("Set Basket/Trade Seq."));
    auto* exit = Button(this, "cmdExit", QStringLiteral("E&xit"));

    auto* bottom = new QHBoxLayout;
    bottom->addStretch();
    bottom->addWidget(exit);
    auto* layout = new QVBoxLayout(this);
    layout->addWidget(Frame(this, QStringLiteral("Database"), {test, create, clear}));
    layout->addWidget(Frame(this, QStringLiteral("Trade Maintenance"), {close}));
    layout->addWidget(Frame(this, QStringLiteral("Sequence Numbers"), {resetSeq}));
    layout->addLayout(bottom);

    connect(test, &QPushButton::clicked, this,
            [this] { run([this] { TestDbConnection(m_db, m_boxes); }); });
    connect(create, &QPushButton::clicked, this,
            [this] { run([this] { CreateInitialDataAgain(m_db); }); });
    connect(clear, &QPushButton::clicked, this,
            [this] { run([this] { ClearTradingData(m_trading, m_boxes); }); });
    connect(close, &QPushButton::clicked, this,
            [this] { run([this] { MarkAllOrdersClosed(m_trading, m_boxes); }); });
    connect(resetSeq, &QPushButton::clicked, this, &frmUtils::openResetSeq);
    connect(exit, &QPushButton::clicked, this, &QDialog::accept);
}

void frmUtils::run(const std::function<void()>& tool) {
    try {
        tool();
    } catch (const std::exception& e) {
        ShowOrdinaryError(m_boxes, e);
    }
}

void frmUtils::openResetSeq() {
    frmResetSeq dialog(m_boxes, m_sequence, m_appFolder, this);
    PlaceBelowRight(dialog, *this);
    dialog.exec();
}

} // namespace wicker
