#include "trading/ui/frmMain.h"

#include "admin/ui/MainColumns.h"
#include "admin/ui/frmDest.h"
#include "admin/ui/frmGeneralSettings.h"
#include "admin/ui/frmSetup.h"
#include "baskets/ImportDefaults.h"
#include "baskets/ui/QtFileChooser.h"
#include "baskets/ui/frmBaskets.h"
#include "common/Text.h"
#include "common/ui/ProgressDialog.h"
#include "storage/clsIniFile.h"
#include "trading/basket/StockList.h"
#include "trading/orders/OrderRow.h"
#include "trading/ui/AboutCommand.h"
#include "trading/ui/BasketOrderWindows.h"
#include "trading/ui/BasketTableModel.h"
#include "trading/ui/ColumnLayout.h"
#include "trading/ui/LimitOverrideDialog.h"
#include "trading/ui/MainBasketEditing.h"
#include "trading/ui/OrderButtonDisplay.h"
#include "trading/ui/PlatformEventPump.h"
#include "trading/ui/StockTableModel.h"
#include "trading/ui/UpDown.h"
#include "trading/ui/UtilitiesCommand.h"
#include "trading/ui/WidgetGeometry.h"

#include <QCloseEvent>
#include <QComboBox>
#include <QGridLayout>
#include <QGuiApplication>
#include <QHBoxLayout>
#include <QHeaderView>
#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QMenu>
#include <QMenuBar>
#include <QPushButton>
#include <QSplitter>
#include <QStatusBar>
#include <QTableView>
#include <QTimer>
#include <QVBoxLayout>

namespace wicker {
namespace {

/// The section of basket.ini that keeps the window's placement.
constexpr const char* kPlacementSection = "frmMain";

QString Q(const std::string& s) {
    return QString::fromStdString(s);
}

QString Name(const char* base, int index) {
    return QString::fromLatin1(base) + QString::number(index);
}

QPushButton* MakeButton(QWidget* parent, const QString& name, const QString& caption) {
    auto* b = new QPushButton(caption, parent);
    b->setObjectName(name);
    b->setAutoDefault(false);
    b->setFocusPolicy(Qt::TabFocus);
    return b;
}

QLabel* MakeLabel(QWidget* parent, const char* name, const char* caption) {
    auto* l = new QLabel(QString::fromLatin1(caption), parent);
    l->setObjectName(QString::fromLatin1(name));
    return l;
}

QLineEdit* MakeField(QWidget* parent, const char* name, int width) {
    auto* e = new QLineEdit(parent);
    e->setObjectName(QString::fromLatin1(name));
    e->setFixedWidth(width);
    e->setAlignment(Qt::AlignRight);
    return e;
}

QTableView* MakeListView(QWidget* parent, const char* name, QAbstractItemModel* model) {
    auto* v = new QTableView(parent);
    v->setObjectName(QString::fromLatin1(name));
    v->setModel(model);
    v->setSelectionBehavior(QAbstractItemView::SelectRows);
    v->setSelectionMode(QAbstractItemView::SingleSelection);
    v->setEditTriggers(QAbstractItemView::NoEditTriggers);
    v->setAlternatingRowColors(true);
    v->setWordWrap(false);
    v->setShowGrid(false);
    v->setCornerButtonEnabled(false);
    // Fixed row heights: the view never measures rows, so 5,000 lines scroll as 50 do.
    v->verticalHeader()->hide();
    v->verticalHeader()->setSectionResizeMode(QHeaderView::Fixed);
    v->verticalHeader()->setDefaultSectionSize(v->fontMetrics().height() + 6);
    v->horizontalHeader()->setSectionsMovable(true);
    v->horizontalHeader()->setHighlightSections(false);
    v->horizontalHeader()->setDefaultAlignment(Qt::AlignLeft | Qt::AlignVCenter);
    v->horizontalHeader()->setStretchLastSection(false);
    v->horizontalHeader()->setDefaultSectionSize(74);
    return v;
}

void SetTextQuietly(QLineEdit& box, const std::string& text) {
    const QString t = Q(text);
    if (box.text() != t) {
        const QSignalBlocker block(&box);
        box.setText(t);
    }
}

} // namespace

frmMain::frmMain(TradingDesk& desk, Platform& platform, MessageBoxes& boxes, QWidget* parent)
    : QMainWindow(parent), m_desk(desk), m_platform(platform), m_boxes(boxes),
      m_files(std::make_unique<QtFileChooser>(this)) {
    setObjectName(QStringLiteral("frmMain"));
    setWindowTitle(TitleText());

    m_stockModel = new StockTableModel(
        m_desk.Stocks(), [this](int row, bool checked) { m_desk.SetLineChecked(row, checked); },
        this);
    m_basketModel = new BasketTableModel(this);

    BuildMenus();
    auto* central = new QWidget(this);
    central->setObjectName(QStringLiteral("frmMainClient"));
    auto* outer = new QVBoxLayout(central);
    outer->setContentsMargins(6, 6, 6, 0);
    outer->setSpacing(6);
    outer->addWidget(BuildTopRow());

    m_lvStocks = MakeListView(central, "lvStocks", m_stockModel);
    m_lvBaskets = MakeListView(central, "lvBaskets", m_basketModel);
    m_lvBaskets->setContextMenuPolicy(Qt::CustomContextMenu);
    m_lvBaskets->horizontalHeader()->setDefaultSectionSize(86); // "Open Orders" in full

    auto* stocksArea = new QWidget(central);
    auto* stocksRow = new QHBoxLayout(stocksArea);
    stocksRow->setContentsMargins(0, 0, 0, 0);
    stocksRow->addWidget(BuildBasketColumn());
    auto* stocksColumn = new QVBoxLayout();
    stocksColumn->setSpacing(4);
    stocksColumn->addWidget(BuildBasketBar());
    stocksColumn->addWidget(m_lvStocks, 1);
    stocksRow->addLayout(stocksColumn, 1);

    auto* lower = new QWidget(central);
    auto* lowerColumn = new QVBoxLayout(lower);
    lowerColumn->setContentsMargins(0, 0, 0, 0);
    lowerColumn->addWidget(BuildOrderButtons());
    m_lblHiddenSends = new QLabel(lower);
    m_lblHiddenSends->setObjectName(QStringLiteral("lblHiddenSends"));
    m_lblHiddenSends->hide();
    lowerColumn->addWidget(m_lblHiddenSends);
    m_lblOrderWarnings = new QLabel(lower);
    m_lblOrderWarnings->setObjectName(QStringLiteral("lblOrderWarnings"));
    m_lblOrderWarnings->setWordWrap(true);
    m_lblOrderWarnings->setStyleSheet(QStringLiteral("color: #b00000; font-weight: bold;"));
    m_lblOrderWarnings->hide();
    lowerColumn->addWidget(m_lblOrderWarnings);
    lowerColumn->addWidget(m_lvBaskets, 1);

    // The two lists share the height the window gives them; the trader can move the border.
    auto* split = new QSplitter(Qt::Vertical, central);
    split->setObjectName(QStringLiteral("splitLists"));
    split->setChildrenCollapsible(false);
    split->addWidget(stocksArea);
    split->addWidget(lower);
    split->setStretchFactor(0, 3);
    split->setStretchFactor(1, 2);
    outer->addWidget(split, 1);
    setCentralWidget(central);

    BuildStatusBar();
    BuildTimers();
    ConnectControls();
    m_basketEditing = new MainBasketEditing(m_desk, m_boxes, *m_lvStocks, *m_lstBaskets, *this);

    m_basketOptions = new QMenu(QStringLiteral("Basket Options"), this);
    m_basketOptions->setObjectName(QStringLiteral("mnuBasketOptions"));
    QAction* cxlAll = m_basketOptions->addAction(QStringLiteral("Cancel All Baskets"));
    cxlAll->setObjectName(QStringLiteral("mnuCxlAll"));
    QAction* cxlSel = m_basketOptions->addAction(QStringLiteral("Cancel Selected Basket"));
    cxlSel->setObjectName(QStringLiteral("mnuCxlSel"));
    connect(cxlAll, &QAction::triggered, this, [this] { m_desk.CancelAllBaskets(); });
    connect(cxlSel, &QAction::triggered, this,
            [this] { m_desk.CancelSelectedBasket(SelectedBasketLine()); });
    m_orderWindows = new BasketOrderWindows(
        m_desk, m_platform, m_boxes, *m_lvBaskets, *m_basketOptions,
        [this] { return SelectedBasketLine(); }, *this);

    m_pump = new PlatformEventPump(
        m_platform.Events(), [this](size_t max) { return m_desk.DrainPlatformEvents(max); }, 2000,
        this);

    m_desk.setScreenChanged([this](uint32_t parts) { Refresh(parts); });
    m_limitOverride = std::make_unique<LimitOverrideDialog>(this);
    m_desk.setLimitOverride(m_limitOverride.get());
    // The platform shut down: close once the current event has been handled.
    m_desk.setCloseMainScreen([this] {
        m_platformShutdown = true; // ends the program at once, without the exit question
        QMetaObject::invokeMethod(this, &QWidget::close, Qt::QueuedConnection);
    });

    resize(1180, 760);
    setMinimumSize(760, 480);
}

frmMain::~frmMain() {
    m_desk.setScreenChanged({});
    m_desk.setCloseMainScreen({});
    m_desk.setLimitOverride(nullptr);
    delete m_pump; // hands the wake-up back before the widgets go
    m_pump = nullptr;
}

// Building -------------------------------------------------------------------------------------

void frmMain::BuildMenus() {
    QMenuBar* bar = menuBar();
    bar->setObjectName(QStringLiteral("mnuMain"));
    const auto menu = [&](const char* name, const char* caption) {
        QMenu* m = bar->addMenu(QString::fromLatin1(caption));
        m->setObjectName(QString::fromLatin1(name));
        return m;
    };
    const auto item = [](QMenu* m, const char* name, const char* caption, bool enabled) {
        QAction* a = m->addAction(QString::fromLatin1(caption));
        a->setObjectName(QString::fromLatin1(name));
        a->setEnabled(enabled);
        return a;
    };

    // Items of screens not built yet are there, greyed.
    QMenu* file = menu("mnuFile", "&File");
    item(file, "mnuFileNew", "&New", false);
    item(file, "mnuFileSave", "Save", false);
    item(file, "mnuFileSaveAs", "Save As...", false);
    file->addSeparator();
    QAction* exitAction = item(file, "mnuExit", "E&xit", true);
    connect(exitAction, &QAction::triggered, this, &QWidget::close);

    QMenu* edit = menu("mnuEdit", "&Edit");
    item(edit, "mnuEditPaste", "Paste", false);

    QMenu* view = menu("mnuView", "View");
    QAction* settings = item(view, "mnuGeneralSettings", "General Settings...", true);
    connect(settings, &QAction::triggered, this,
            [this] { ShowGeneralSettings(m_desk, m_boxes, this); });
    QAction* columns = item(view, "mnuColumns", "Columns...", true);
    connect(columns, &QAction::triggered, this, [this] {
        if (m_columns != nullptr) {
            m_columns->OpenDialog(this);
        }
    });
    QAction* accounts = item(view, "mnuAccounts", "&Accounts...", true);
    QAction* baskets = item(view, "mnuBaskets", "&Baskets...", true);
    QAction* destinations = item(view, "mnuDestinations", "&Destinations...", true);
    connect(accounts, &QAction::triggered, this, &frmMain::OpenAccountSetup);
    connect(baskets, &QAction::triggered, this, &frmMain::OpenBasketSetup);
    connect(destinations, &QAction::triggered, this, &frmMain::OpenDestinationSetup);

    QMenu* tools = menu("mnuTools", "&Tools");
    QAction* utilities = item(tools, "mnuUtilities", "&Utilities...", true);
    connect(utilities, &QAction::triggered, this, [this] { OpenUtilities(m_desk, m_boxes, this); });

    QMenu* help = menu("mnuHelp", "&Help");
    QAction* about = item(help, "mnuAbout", "&About...", true);
    connect(about, &QAction::triggered, this, [this] { ShowAbout(m_desk, m_platform, this); });
}

QWidget* frmMain::BuildTopRow() {
    auto* row = new QWidget(this);
    row->setObjectName(QStringLiteral("fraFields"));
    auto* h = new QHBoxLayout(row);
    h->setContentsMargins(0, 0, 0, 0);
    h->setSpacing(4);

    m_cboAccount = new QComboBox(row);
    m_cboAccount->setObjectName(QStringLiteral("cboAccount"));
    m_cboAccount->setEditable(true);
    m_cboAccount->setInsertPolicy(QComboBox::NoInsert);
    m_cboAccount->lineEdit()->setPlaceholderText(QStringLiteral("Please Select Account"));
    m_cboAccount->setMinimumWidth(170);
    m_cboAccount->lineEdit()->installEventFilter(this);
    h->addWidget(m_cboAccount);
    h->addSpacing(10);

    const auto field = [&](const char* labelName, const char* caption, QLineEdit*& box,
                           const char* boxName, UpDown*& spinner, const char* spinnerName) {
        QLabel* label = MakeLabel(row, labelName, caption);
        h->addWidget(label);
        box = MakeField(row, boxName, 52);
        // Screen readers name the box and its arrows after the caption.
        const QString name = QString::fromLatin1(caption).remove(QLatin1Char(':'));
        box->setAccessibleName(name);
        label->setBuddy(box);
        h->addWidget(box);
        spinner = new UpDown(QString::fromLatin1(spinnerName), row);
        spinner->setAccessibleName(name + QStringLiteral(" up and down"));
        h->addWidget(spinner);
        h->addSpacing(8);
    };
    field("lblPercent", "Multiplier:", m_txtPercent, "txtPercent", m_upDown2, "UpDown2");
    field("lblDelta", "Delta:", m_txtDelta, "txtDelta", m_upDown3, "UpDown3");
    field("lblMod", "Mod:", m_txtMod, "txtMod", m_upDown1, "UpDown1");

    h->addWidget(MakeLabel(row, "lblTif", "TIF:"));
    m_cbTif = new QComboBox(row);
    m_cbTif->setObjectName(QStringLiteral("cbTif"));
    m_cbTif->setEditable(true);
    m_cbTif->setInsertPolicy(QComboBox::NoInsert);
    m_cbTif->setFixedWidth(72);
    h->addWidget(m_cbTif);
    h->addSpacing(12);

    h->addStretch(1);
    return row;
}

QWidget* frmMain::BuildBasketBar() {
    auto* bar = new QWidget(this);
    bar->setObjectName(QStringLiteral("fraBasket"));
    auto* h = new QHBoxLayout(bar);
    h->setContentsMargins(0, 0, 0, 0);
    h->setSpacing(4);
    h->addWidget(MakeLabel(bar, "lblCurrentBasket", "Current Basket:"));
    m_labelName = new QLabel(QStringLiteral("Basket"), bar);
    m_labelName->setObjectName(QStringLiteral("labelName"));
    QFont bold = m_labelName->font();
    bold.setBold(true);
    m_labelName->setFont(bold);
    h->addWidget(m_labelName, 1);
    m_cmdClear = MakeButton(bar, QStringLiteral("cmdClear"), QStringLiteral("Clear"));
    m_cmdSA = MakeButton(bar, QStringLiteral("cmdSA"), QStringLiteral("Select All"));
    m_cmdCA = MakeButton(bar, QStringLiteral("cmdCA"), QStringLiteral("Deselect All"));
    h->addWidget(m_cmdClear);
    h->addWidget(m_cmdSA);
    h->addWidget(m_cmdCA);
    return bar;
}

QWidget* frmMain::BuildBasketColumn() {
    auto* column = new QWidget(this);
    column->setObjectName(QStringLiteral("fraBaskets"));
    column->setFixedWidth(150);
    auto* v = new QVBoxLayout(column);
    v->setContentsMargins(0, 0, 0, 0);
    v->setSpacing(4);
    v->addWidget(MakeLabel(column, "lblBaskets", "Baskets"));
    m_lstBaskets = new QListWidget(column);
    m_lstBaskets->setObjectName(QStringLiteral("lstBaskets"));
    v->addWidget(m_lstBaskets, 1);

    m_quickLoadBox = new QWidget(column);
    m_quickLoadBox->setObjectName(QStringLiteral("fraQuickLoad"));
    auto* buttons = new QVBoxLayout(m_quickLoadBox);
    buttons->setContentsMargins(0, 0, 0, 0);
    buttons->setSpacing(3);
    for (int i = 1; i <= QuickLoadButtonCount; ++i) {
        QPushButton* b = MakeButton(m_quickLoadBox, Name("cmdLoad_", i), QString());
        b->hide();
        m_cmdLoad[static_cast<size_t>(i - 1)] = b;
        buttons->addWidget(b);
    }
    v->addWidget(m_quickLoadBox);
    return column;
}

QWidget* frmMain::BuildOrderButtons() {
    auto* box = new QWidget(this);
    box->setObjectName(QStringLiteral("fraOrderButtons"));
    m_orderGrid = new QGridLayout(box);
    m_orderGrid->setContentsMargins(0, 0, 0, 0);
    m_orderGrid->setHorizontalSpacing(4);
    m_orderGrid->setVerticalSpacing(3);
    for (int i = 0; i < ExecuteButtonCount; ++i) {
        const std::optional<ExecuteButtonRule> rule = ExecuteButtonRuleFor(i);
        QPushButton* b =
            MakeButton(box, Name("cmdExecuteBasket_", i),
                       QString::fromLatin1(rule->caption.data(),
                                           static_cast<qsizetype>(rule->caption.size())));
        b->setMinimumWidth(82);
        b->setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Fixed);
        m_cmdExecute[static_cast<size_t>(i)] = b;
        connect(b, &QPushButton::clicked, this, [this, i] { ExecuteBasket(i); });
    }
    m_buttonShown.fill(true);
    LayOutOrderButtons();
    return box;
}

void frmMain::BuildStatusBar() {
    QStatusBar* bar = statusBar();
    bar->setObjectName(QStringLiteral("sbMain"));
    bar->setSizeGripEnabled(true);
    m_statusPlatform = new QLabel(bar);
    m_statusPlatform->setObjectName(QStringLiteral("sbMainPanel1"));
    m_statusNotional = new QLabel(QStringLiteral("0.00"), bar);
    m_statusNotional->setObjectName(QStringLiteral("sbMainPanel2"));
    m_statusNotional->setMinimumWidth(140);
    m_statusNotional->setAlignment(Qt::AlignRight | Qt::AlignVCenter);
    bar->addPermanentWidget(m_statusPlatform, 1);
    bar->addPermanentWidget(m_statusNotional);
}

void frmMain::BuildTimers() {
    const auto make = [this](const char* name, int ms, void (frmMain::*tick)()) {
        auto* t = new QTimer(this);
        t->setObjectName(QString::fromLatin1(name));
        t->setInterval(ms);
        connect(t, &QTimer::timeout, this, tick);
        return t;
    };
    m_timer200ms = make("Timer200ms", 200, &frmMain::Timer200ms);
    m_timer1sec = make("Timer1sec", 1000, &frmMain::Timer1sec);
    m_timer2sec = make("Timer2sec", 2000, &frmMain::Timer2sec);
}

void frmMain::ConnectControls() {
    connect(m_txtPercent, &QLineEdit::textChanged, this,
            [this](const QString& t) { m_desk.SetPercent(t.toStdString()); });
    connect(m_txtDelta, &QLineEdit::textChanged, this,
            [this](const QString& t) { m_desk.SetDelta(t.toStdString()); });
    connect(m_txtMod, &QLineEdit::textChanged, this,
            [this](const QString& t) { m_desk.SetModifier(t.toStdString()); });
    connect(m_cbTif, &QComboBox::currentTextChanged, this,
            [this](const QString& t) { m_desk.SetTifText(t.toStdString()); });
    connect(m_upDown1, &UpDown::stepped, this,
            [this](bool up) { SetTextQuietly(*m_txtMod, m_desk.UpDown1(up)); });
    connect(m_upDown2, &UpDown::stepped, this,
            [this](bool up) { SetTextQuietly(*m_txtPercent, m_desk.UpDown2(up)); });
    connect(m_upDown3, &UpDown::stepped, this,
            [this](bool up) { SetTextQuietly(*m_txtDelta, m_desk.UpDown3(up)); });

    connect(m_cboAccount, &QComboBox::activated, this, [this] { ConfirmAccountText(); });
    connect(m_cboAccount->lineEdit(), &QLineEdit::returnPressed, this,
            [this] { ConfirmAccountText(); });

    connect(m_cmdClear, &QPushButton::clicked, this, [this] { m_desk.cmdClear_Click(); });
    connect(m_cmdSA, &QPushButton::clicked, this, [this] { m_desk.cmdSA_Click(); });
    connect(m_cmdCA, &QPushButton::clicked, this, [this] { m_desk.cmdCA_Click(); });
    for (int i = 1; i <= QuickLoadButtonCount; ++i) {
        connect(m_cmdLoad[static_cast<size_t>(i - 1)], &QPushButton::clicked, this,
                [this, i] { m_desk.cmdLoad_Click(i); });
    }
    connect(m_lstBaskets, &QListWidget::currentRowChanged, this, &frmMain::BasketListRowChanged);
    connect(m_lstBaskets, &QListWidget::itemClicked, this, [this] { BasketListClicked(); });
    connect(m_lvBaskets, &QWidget::customContextMenuRequested, this, &frmMain::ShowBasketOptions);
}

// Start and end ------------------------------------------------------------------------------

Result<void> frmMain::FormLoad() {
    if (m_loaded) {
        return {};
    }
    Result<void> loaded = [this] {
        ProgressDialog progress(this); // a first start may import many old baskets
        return m_desk.FormLoad(&progress);
    }();
    if (!loaded) {
        return loaded;
    }
    m_loaded = true;
    {
        const QSignalBlocker block(m_cbTif);
        m_cbTif->clear();
        for (const std::string& tif : m_desk.TifList()) {
            m_cbTif->addItem(Q(tif));
        }
    }
    Refresh(~0u);
    ApplyColumnLayouts();
    m_columns = new MainColumns(m_desk, m_boxes, *m_lvStocks->horizontalHeader(),
                                *m_lvBaskets->horizontalHeader(), this);
    LoadPlacement();
    setWindowTitle(TitleText());
    m_timer200ms->start();
    m_timer1sec->start();
    m_timer2sec->start();
    return {};
}

void frmMain::FormUnload() {
    if (m_unloaded || !m_loaded) {
        return;
    }
    m_unloaded = true;
    stopTimers();
    m_columns->CaptureForUnload(); // positions and widths; the desk writes the rest
    SavePlacement();
    m_desk.FormUnload();
}

void frmMain::stopTimers() {
    m_timer200ms->stop();
    m_timer1sec->stop();
    m_timer2sec->stop();
}

void frmMain::closeEvent(QCloseEvent* event) {
    if (m_loaded && !m_unloaded && !m_platformShutdown && !m_desk.ConfirmExit()) {
        event->ignore(); // the trader chose to stay
        return;
    }
    FormUnload();
    event->accept();
}

// Timers -------------------------------------------------------------------------------------

void frmMain::Timer200ms() {
    m_desk.Timer200ms(); // cell changes reach lvStocks through the line store
}

void frmMain::Timer1sec() {
    m_desk.Timer1sec(); // a rebuilt lvBaskets comes back as ScreenPart::BasketTotals
}

void frmMain::Timer2sec() {
    m_desk.Timer2sec();
}

// Writing the screen ---------------------------------------------------------------------------

void frmMain::Refresh(uint32_t parts) {
    if (parts & ScreenPart::BasketList) {
        FillBasketList();
    }
    if (parts & ScreenPart::QuickLoadButtons) {
        FillQuickLoadButtons();
    }
    if (parts & ScreenPart::Accounts) {
        FillAccounts();
    }
    if (parts & ScreenPart::BasketName) {
        m_labelName->setText(Q(m_desk.CurrentBasketName()));
        HighlightLoadedBasket();
    }
    if (parts & ScreenPart::OrderButtons) {
        ApplyOrderButtonStates();
    }
    if (parts & ScreenPart::ButtonDisplay) {
        ApplyButtonDisplay();
    }
    if (parts & ScreenPart::StatusBar) {
        FillStatusBar();
    }
    if (parts & ScreenPart::BasketTotals) {
        const int before = m_basketModel->rowCount();
        m_basketModel->setLines(m_desk.BasketListLines());
        // A new send comes in at the bottom: bring it into view.
        if (m_basketModel->rowCount() > before) {
            m_lvBaskets->scrollToBottom();
        }
        ShowHiddenSends();
    }
    if (parts & ScreenPart::Fields) {
        FillFields();
    }
}

void frmMain::HighlightLoadedBasket() {
    const QSignalBlocker block(m_lstBaskets);
    const QString loaded = Q(m_desk.CurrentBasketName());
    for (int row = 0; row < m_lstBaskets->count(); ++row) {
        if (m_desk.CurrentBasketNum() != -1 &&
            m_lstBaskets->item(row)->text().compare(loaded, Qt::CaseInsensitive) == 0) {
            m_lstBaskets->setCurrentRow(row);
            return;
        }
    }
    // An unsaved basket is none of the stored ones.
    m_lstBaskets->setCurrentRow(-1);
}

void frmMain::ShowHiddenSends() {
    const QString text = Q(m_desk.HiddenSendsText());
    if (m_lblHiddenSends->text() != text) {
        m_lblHiddenSends->setText(text);
        // Open orders out of sight are a risk: say so in red.
        m_lblHiddenSends->setStyleSheet(m_desk.OpenSendsHidden()
                                            ? QStringLiteral("color: #b00000; font-weight: bold;")
                                            : QString());
    }
    m_lblHiddenSends->setVisible(!text.isEmpty() && m_desk.settings().basketInfoDisplay);
    // Orders nobody answered may be working at the broker: shown whatever the list shows.
    const QString warning = Q(m_desk.NoAnswerText());
    m_lblOrderWarnings->setText(warning);
    m_lblOrderWarnings->setVisible(!warning.isEmpty());
}

void frmMain::FillBasketList() {
    const QSignalBlocker block(m_lstBaskets);
    const QString current =
        m_lstBaskets->currentItem() ? m_lstBaskets->currentItem()->text() : QString();
    m_lstBaskets->clear();
    for (const std::string& name : m_desk.BasketNames()) {
        m_lstBaskets->addItem(Q(name));
        if (Q(name) == current) {
            m_lstBaskets->setCurrentRow(m_lstBaskets->count() - 1);
        }
    }
}

void frmMain::FillQuickLoadButtons() {
    const auto& buttons = m_desk.QuickLoadButtons();
    for (size_t i = 0; i < buttons.size(); ++i) {
        QPushButton* b = m_cmdLoad[i];
        const bool used = buttons[i].basketNum != 0;
        b->setText(used ? Q(buttons[i].caption) : QString());
        b->setToolTip(used ? Q(buttons[i].basketName) : QString());
        b->setVisible(used);
    }
    m_quickLoadBox->setVisible(m_desk.Loaded() ? m_desk.settings().basketButtons : true);
}

void frmMain::FillAccounts() {
    const AccountList& accounts = m_desk.Accounts();
    const QSignalBlocker block(m_cboAccount);
    m_cboAccount->clear();
    for (const std::string& a : accounts.accounts) {
        m_cboAccount->addItem(Q(a));
    }
    const int at = m_cboAccount->findText(Q(accounts.text), Qt::MatchExactly);
    m_cboAccount->setCurrentIndex(at);
    m_cboAccount->setEditText(Q(accounts.text));
}

void frmMain::FillFields() {
    SetTextQuietly(*m_txtPercent, m_desk.PercentText());
    SetTextQuietly(*m_txtDelta, m_desk.DeltaText());
    SetTextQuietly(*m_txtMod, m_desk.ModText());
    const QString tif = Q(m_desk.TifText());
    if (m_cbTif->currentText() != tif) {
        const QSignalBlocker block(m_cbTif);
        const int at = m_cbTif->findText(tif, Qt::MatchExactly);
        if (at >= 0) {
            m_cbTif->setCurrentIndex(at);
        } else {
            m_cbTif->setEditText(tif);
        }
    }
}

void frmMain::FillStatusBar() {
    m_statusNotional->setText(Q(m_desk.StatusNotional()));
    QString platform = Q(m_platform.DisplayName());
    if (!m_desk.PlatformStatusText().empty()) {
        platform += QStringLiteral(": ") + Q(m_desk.PlatformStatusText());
    } else if (!m_desk.PlatformOnline()) {
        platform += QStringLiteral(": offline");
    }
    m_statusPlatform->setText(platform);
}

void frmMain::ApplyOrderButtonStates() {
    const auto& enabled = m_desk.OrderButtonsEnabled();
    for (size_t i = 0; i < m_cmdExecute.size(); ++i) {
        m_cmdExecute[i]->setEnabled(enabled[i]);
    }
}

void frmMain::ApplyButtonDisplay() {
    if (!m_desk.Loaded()) {
        return;
    }
    const Settings& s = m_desk.settings();
    m_buttonShown = ButtonsShown(s.buttons);
    const std::array<int32_t, 3> colours{s.buyButtonColor, s.sellButtonColor, s.shortButtonColor};
    for (int i = 0; i < ExecuteButtonCount; ++i) {
        QPushButton* b = m_cmdExecute[static_cast<size_t>(i)];
        QPalette p = QWidget::palette();
        if (s.colorOrderButtons) {
            const auto side = static_cast<size_t>(SideOfButton(i));
            const QColor c = ColorFromSetting(colours[side], p);
            // Active and inactive only: a disabled button keeps the greyed look.
            for (QPalette::ColorGroup g : {QPalette::Active, QPalette::Inactive}) {
                p.setColor(g, QPalette::Button, c);
                // Keep the caption readable on a dark colour.
                p.setColor(g, QPalette::ButtonText, c.lightness() < 110 ? Qt::white : Qt::black);
            }
        }
        b->setPalette(p);
    }
    LayOutOrderButtons();
    m_lvBaskets->setVisible(s.basketInfoDisplay);
    ShowHiddenSends();
    m_quickLoadBox->setVisible(s.basketButtons);
}

void frmMain::LayOutOrderButtons() {
    // Shown buttons close up from the left, one row per side, whatever the window's width.
    for (QPushButton* b : m_cmdExecute) {
        m_orderGrid->removeWidget(b);
    }
    int row = 0;
    for (ButtonSide side : {ButtonSide::Buy, ButtonSide::Sell, ButtonSide::Short}) {
        int column = 0;
        for (int index : ButtonRow(side)) {
            QPushButton* b = m_cmdExecute[static_cast<size_t>(index)];
            const bool shown = m_buttonShown[static_cast<size_t>(index)];
            b->setVisible(shown);
            if (shown) {
                m_orderGrid->addWidget(b, row, column++);
            }
        }
        ++row;
    }
}

void frmMain::ApplyColumnLayouts() {
    // Widths for a first start; the settings' own widths follow and win.
    m_lvStocks->horizontalHeader()->resizeSection(stkSymbol, 90);
    m_lvBaskets->horizontalHeader()->resizeSection(colBasket, 110);
    m_lvBaskets->horizontalHeader()->resizeSection(colTime, 96);
    // Room for "100,000,000.00": a $100M send reads in full.
    for (const int dollars : {colDlrsBot, colDlrsSld}) {
        m_lvBaskets->horizontalHeader()->resizeSection(
            dollars,
            m_lvBaskets->fontMetrics().horizontalAdvance(QStringLiteral("100,000,000.00")) + 16);
    }
    const Settings& s = m_desk.settings();
    ApplyColumnLayout(*m_lvStocks->horizontalHeader(),
                      {s.stockColumnWidths, s.basketItemsCols, s.itemsPositions}, StockColumnCount);
    ApplyColumnLayout(*m_lvBaskets->horizontalHeader(),
                      {s.basketColumnWidths, s.basketInfoCols, s.infoPositions},
                      BasketListColumnCount);
}

// User actions ----------------------------------------------------------------------------------

void frmMain::ExecuteBasket(int index) {
    const ExecuteReport report =
        m_desk.ExecuteBasket(index, m_cboAccount->currentText().toStdString());
    if (report.outcome == ExecuteOutcome::MissingAccount) {
        m_cboAccount->setFocus();
    }
}

void frmMain::ConfirmAccountText() {
    const std::string typed = m_cboAccount->currentText().toStdString();
    // Only a change is stored: leaving the box with the default account in it writes nothing.
    if (UCase(Trim(typed)) == m_desk.Accounts().text) {
        return;
    }
    m_desk.ConfirmAccount(typed);
}

bool frmMain::eventFilter(QObject* watched, QEvent* event) {
    if (m_cboAccount != nullptr && watched == m_cboAccount->lineEdit() &&
        event->type() == QEvent::FocusOut) {
        ConfirmAccountText();
    }
    return QMainWindow::eventFilter(watched, event);
}

void frmMain::BasketListRowChanged(int row) {
    if (row < 0) {
        return;
    }
    // A mouse press that changes the row is followed by a click on the same name.
    m_listJustLoaded = QGuiApplication::mouseButtons() != Qt::NoButton;
    m_desk.LoadBasketByName(m_lstBaskets->item(row)->text().toStdString());
}

void frmMain::BasketListClicked() {
    // A click on a new name has loaded it through the row change already; a click on the
    // name that was chosen before loads it again.
    if (m_listJustLoaded) {
        m_listJustLoaded = false;
        return;
    }
    if (QListWidgetItem* item = m_lstBaskets->currentItem()) {
        m_desk.LoadBasketByName(item->text().toStdString());
    }
}

std::optional<BasketListSelection> frmMain::SelectedBasketLine() const {
    const auto& lines = m_basketModel->lines();
    if (lines.empty()) {
        return std::nullopt;
    }
    // As the old list view did, the first line counts as selected until another is chosen.
    const QModelIndex current = m_lvBaskets->currentIndex();
    const size_t row = current.isValid() && static_cast<size_t>(current.row()) < lines.size()
                           ? static_cast<size_t>(current.row())
                           : 0;
    return BasketListSelection{lines[row][colBasketNum], lines[row][colBasket]};
}

void frmMain::ShowBasketOptions(const QPoint& pos) {
    m_basketOptions->popup(m_lvBaskets->viewport()->mapToGlobal(pos));
}

void frmMain::OpenBasketSetup() {
    if (!m_desk.Loaded()) {
        return;
    }
    const std::filesystem::path folder = m_desk.AppFolder();
    BasketUiContext ctx{
        m_desk.db(), m_boxes, m_desk.IndexStore(), m_desk, *m_files, folder, [folder] {
            return ReadImportDefaults(folder / "basket.ini");
        }};
    frmBaskets dialog(std::move(ctx), this);
    dialog.exec();
}

void frmMain::OpenAccountSetup() {
    if (!m_desk.Loaded()) {
        return;
    }
    // The desk reads its account list only at start-up and when an account is typed: after
    // the setup screen saved, the box is filled from the database here.
    frmSetup dialog(
        m_desk.db(), m_boxes,
        [this] {
            const AccountList accounts = ReadAccounts(m_desk.db());
            const QSignalBlocker block(m_cboAccount);
            m_cboAccount->clear();
            for (const std::string& a : accounts.accounts) {
                m_cboAccount->addItem(Q(a));
            }
            m_cboAccount->setCurrentIndex(m_cboAccount->findText(Q(accounts.text)));
            m_cboAccount->setEditText(Q(accounts.text));
        },
        this);
    dialog.exec();
}

void frmMain::OpenDestinationSetup() {
    if (!m_desk.Loaded()) {
        return;
    }
    frmDest dialog(m_desk.db(), m_boxes, this);
    dialog.exec();
}

// Placement and title -------------------------------------------------------------------------

void frmMain::SavePlacement() {
    clsIniFile ini;
    ini.setPath(m_desk.AppFolder() / "basket.ini");
    ini.setSection(kPlacementSection);
    WidgetGeometry geometry(*this);
    ini.SaveFormPosition(geometry);
}

void frmMain::LoadPlacement() {
    clsIniFile ini;
    ini.setPath(m_desk.AppFolder() / "basket.ini");
    ini.setSection(kPlacementSection);
    WidgetGeometry geometry(*this);
    ini.LoadFormPosition(geometry, minimumWidth(), minimumHeight());
}

QString frmMain::TitleText() const {
    return QStringLiteral("Wicker - ") + Q(m_platform.DisplayName()) + QStringLiteral(" - ") +
           QString::fromStdString(m_desk.AppFolder().string());
}

} // namespace wicker
