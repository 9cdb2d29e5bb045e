#include "admin/ui/frmGeneralSettings.h"

#include "baskets/Destinations.h"
#include "common/MessageBox.h"
#include "trading/TradingDesk.h"
#include "trading/ui/OrderButtonDisplay.h"

#include <exception>
#include <map>
#include <string_view>

#include <QCheckBox>
#include <QColorDialog>
#include <QComboBox>
#include <QFormLayout>
#include <QGridLayout>
#include <QGroupBox>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QTabWidget>
#include <QVBoxLayout>

namespace wicker {
namespace {

constexpr const char* kTitle = "General Settings";

QString Q(const std::string& s) {
    return QString::fromStdString(s);
}
QString L(const char* s) {
    return QString::fromLatin1(s);
}

QCheckBox* MakeCheck(QWidget* parent, const char* name, const char* caption) {
    auto* c = new QCheckBox(L(caption), parent);
    c->setObjectName(L(name));
    return c;
}

// A box as wide as the longest value it takes: `chars` digits-wide characters.
void FitToChars(QWidget& box, int chars) {
    constexpr int kFrameAndArrow = 24;
    box.setFixedWidth(box.fontMetrics().horizontalAdvance(QString(chars, QLatin1Char('0'))) +
                      kFrameAndArrow);
}

// Characters of the longest usual value of each platform box.
int PlatformBoxChars(std::string_view key) {
    static const std::map<std::string_view, int> kChars = {{"FixHost", 24},
                                                           {"FixPort", 6},
                                                           {"FixSenderCompID", 16},
                                                           {"FixTargetCompID", 16},
                                                           {"FixHeartBtInt", 5},
                                                           {"FixReconnectInterval", 5},
                                                           {"FixMemoTag", 5},
                                                           {"FixSendWindow", 6},
                                                           {"FixSettingsFile", 32},
                                                           {"SimSeed", 10},
                                                           {"SimUpdatesPerSecond", 5},
                                                           {"SimFillDelayMs", 7},
                                                           {"SimClipSize", 8},
                                                           {"SimHalted", 24},
                                                           {"EnabledDestinations", 24},
                                                           {"MaxOrderNotional", 12}};
    const auto it = kChars.find(key);
    return it == kChars.end() ? 12 : it->second;
}

// Fields keep their own width instead of stretching across the page.
QFormLayout* MakeForm(QWidget* parent = nullptr) {
    auto* form = new QFormLayout(parent);
    form->setFieldGrowthPolicy(QFormLayout::FieldsStayAtSizeHint);
    return form;
}

QComboBox* MakeChoice(QWidget* parent, const QString& name,
                      std::initializer_list<const char*> items, bool editable = false) {
    auto* c = new QComboBox(parent);
    c->setObjectName(name);
    for (const char* item : items) {
        c->addItem(L(item));
    }
    c->setEditable(editable);
    c->setSizeAdjustPolicy(QComboBox::AdjustToContents);
    return c;
}

// Shows `text` in the box: the item of that text, else (a value the list lacks, read from
// a hand-edited file) the text itself, so what is in force is never hidden.
void ShowChoice(QComboBox& box, const QString& text) {
    const int at = box.findText(text, Qt::MatchFixedString);
    if (at >= 0) {
        box.setCurrentIndex(at);
    } else if (box.isEditable()) {
        box.setEditText(text);
    } else if (!text.isEmpty()) {
        box.addItem(text);
        box.setCurrentIndex(box.count() - 1);
    } else {
        box.setCurrentIndex(-1);
    }
}

QString ControlText(const QWidget* w) {
    if (const auto* e = qobject_cast<const QLineEdit*>(w)) {
        return e->text();
    }
    if (const auto* c = qobject_cast<const QComboBox*>(w)) {
        return c->currentText();
    }
    if (const auto* b = qobject_cast<const QCheckBox*>(w)) {
        return b->isChecked() ? QStringLiteral("1") : QStringLiteral("0");
    }
    return {};
}

void SetControlText(QWidget* w, const QString& text) {
    if (auto* e = qobject_cast<QLineEdit*>(w)) {
        e->setText(text);
    } else if (auto* c = qobject_cast<QComboBox*>(w)) {
        ShowChoice(*c, text);
    } else if (auto* b = qobject_cast<QCheckBox*>(w)) {
        b->setChecked(text.trimmed() == QStringLiteral("1"));
    }
}

// The number chosen in a box of numbers; 0 when nothing usable is chosen.
int32_t ChosenNumber(const QComboBox& box) {
    bool ok = false;
    const int n = box.currentText().toInt(&ok);
    return ok ? n : 0;
}

constexpr std::array<OrderSide, 3> kSides{OrderSide::Buy, OrderSide::Sell, OrderSide::Short};
constexpr std::array<OrderKind, 6> kKinds{OrderKind::Bid, OrderKind::Ask, OrderKind::Last,
                                          OrderKind::Mkt, OrderKind::Moo, OrderKind::Moc};

} // namespace

frmGeneralSettings::frmGeneralSettings(TradingDesk& desk, MessageBoxes& boxes, QWidget* parent)
    : QDialog(parent), m_desk(desk), m_boxes(boxes) {
    setObjectName(QStringLiteral("frmGeneralSettings"));
    setWindowTitle(L(kTitle));
    m_chooseColor = [this](int32_t current, const QString& title) -> std::optional<int32_t> {
        const QColor c = QColorDialog::getColor(ColorFromSetting(current, palette()), this, title);
        if (!c.isValid()) {
            return std::nullopt;
        }
        return ColorSettingOf(c.red(), c.green(), c.blue());
    };
    try {
        m_destinations = EnabledDestinations(m_desk.db(), true);
    } catch (const std::exception&) {
        m_destinations.clear(); // any name is taken then; the import checks it again
    }

    m_tabs = new QTabWidget(this);
    m_tabs->setObjectName(QStringLiteral("tabSettings"));
    m_tabs->addTab(BuildTradingPage(), QStringLiteral("Trading"));
    m_tabs->addTab(BuildDisplayPage(), QStringLiteral("Display"));
    m_tabs->addTab(BuildLimitsPage(), QStringLiteral("Limits"));
    m_tabs->addTab(BuildImportPage(), QStringLiteral("Import"));
    m_tabs->addTab(BuildPlatformPage(), QStringLiteral("Platform"));

    auto* ok = new QPushButton(QStringLiteral("OK"), this);
    ok->setObjectName(QStringLiteral("cmdOK"));
    ok->setDefault(true);
    auto* apply = new QPushButton(QStringLiteral("&Apply"), this);
    apply->setObjectName(QStringLiteral("cmdApply"));
    apply->setAutoDefault(false);
    auto* cancel = new QPushButton(QStringLiteral("Cancel"), this);
    cancel->setObjectName(QStringLiteral("cmdCancel"));
    cancel->setAutoDefault(false);
    connect(ok, &QPushButton::clicked, this, [this] {
        if (Save()) {
            accept();
        }
    });
    connect(apply, &QPushButton::clicked, this, [this] { Save(); });
    connect(cancel, &QPushButton::clicked, this, &QDialog::reject);

    auto* buttons = new QHBoxLayout;
    buttons->addStretch();
    buttons->addWidget(ok);
    buttons->addWidget(apply);
    buttons->addWidget(cancel);
    auto* layout = new QVBoxLayout(this);
    layout->addWidget(m_tabs);
    layout->addLayout(buttons);

    m_loaded = LoadGeneralSettings(m_desk.settings(), m_desk.AppFolder());
    Fill(m_loaded);
}

QWidget* frmGeneralSettings::BuildTradingPage() {
    auto* page = new QWidget(this);
    auto* form = MakeForm(page);
    m_cboShareRounding = MakeChoice(page, QStringLiteral("cboShareRounding"), {"1", "10", "100"});
    form->addRow(QStringLiteral("Round quantities above 100 shares to lots of:"),
                 m_cboShareRounding);

    auto* confirm = new QGroupBox(QStringLiteral("Ask for confirmation"), page);
    auto* confirmRows = new QVBoxLayout(confirm);
    m_chkBeforeSending = MakeCheck(confirm, "chkBeforeSending", "Before sending a basket");
    m_chkBeforeCancel = MakeCheck(confirm, "chkBeforeCancel", "Before cancelling orders");
    m_chkBeforeChange = MakeCheck(confirm, "chkBeforeChange", "Before changing orders");
    m_chkBeforeExit = MakeCheck(confirm, "chkBeforeExit", "Before exiting with open orders");
    for (QCheckBox* c :
         {m_chkBeforeSending, m_chkBeforeCancel, m_chkBeforeChange, m_chkBeforeExit}) {
        confirmRows->addWidget(c);
    }
    form->addRow(confirm);

    m_chkReserve = MakeCheck(page, "chkReserve", "Send reserve orders, showing");
    m_txtReserve = new QLineEdit(page);
    m_txtReserve->setObjectName(QStringLiteral("txtReserve"));
    FitToChars(*m_txtReserve, 7);
    auto* reserve = new QHBoxLayout;
    reserve->addWidget(m_chkReserve);
    reserve->addWidget(m_txtReserve);
    reserve->addWidget(new QLabel(QStringLiteral("shares (ARCA, INET, NASDAQ, ...)"), page));
    reserve->addStretch();
    form->addRow(reserve);

    m_cboDecimals = MakeChoice(page, QStringLiteral("cboDecimals"), {"2", "3", "4"});
    form->addRow(QStringLiteral("Decimals shown for prices:"), m_cboDecimals);
    return page;
}

QWidget* frmGeneralSettings::BuildDisplayPage() {
    auto* page = new QWidget(this);
    auto* v = new QVBoxLayout(page);
    m_chkBasketButtons = MakeCheck(page, "chkBasketButtons", "Show the basket buttons");
    m_chkBasketInfo = MakeCheck(page, "chkBasketInfo", "Show the basket totals list");
    m_chkShowAll = MakeCheck(page, "chkShowAll",
                             "Show all baskets in the totals list, not only the loaded one");
    for (QCheckBox* c : {m_chkBasketButtons, m_chkBasketInfo, m_chkShowAll}) {
        v->addWidget(c);
    }

    auto* orderButtons = new QGroupBox(QStringLiteral("Order buttons shown"), page);
    auto* grid = new QGridLayout(orderButtons);
    m_chkMOO = MakeCheck(orderButtons, "chkMOO", "Offer market-on-open (MOO) buttons");
    m_chkMOC = MakeCheck(orderButtons, "chkMOC", "Offer market-on-close (MOC) buttons");
    grid->addWidget(m_chkMOO, 0, 0, 1, 7);
    grid->addWidget(m_chkMOC, 1, 0, 1, 7);
    const char* kinds[] = {"BID", "ASK", "LAST", "MKT", "MOO", "MOC"};
    const char* sides[] = {"BUY", "SELL", "SHRT"};
    for (size_t k = 0; k < kKinds.size(); ++k) {
        grid->addWidget(new QLabel(L(kinds[k]), orderButtons), 2, static_cast<int>(k) + 1,
                        Qt::AlignCenter);
    }
    for (size_t s = 0; s < kSides.size(); ++s) {
        grid->addWidget(new QLabel(L(sides[s]), orderButtons), static_cast<int>(s) + 3, 0);
        for (size_t k = 0; k < kKinds.size(); ++k) {
            const size_t flag = ButtonFlagIndex(kSides[s], kKinds[k]);
            auto* c = new QCheckBox(orderButtons);
            c->setObjectName(QStringLiteral("chkButton_%1").arg(flag));
            c->setToolTip(L(sides[s]) + QLatin1Char(' ') + L(kinds[k]));
            m_chkButton[flag] = c;
            grid->addWidget(c, static_cast<int>(s) + 3, static_cast<int>(k) + 1, Qt::AlignCenter);
        }
    }
    connect(m_chkMOO, &QCheckBox::toggled, this,
            [this](bool on) { OptionalButtonsToggled(OrderKind::Moo, on); });
    connect(m_chkMOC, &QCheckBox::toggled, this,
            [this](bool on) { OptionalButtonsToggled(OrderKind::Moc, on); });
    v->addWidget(orderButtons);

    auto* colours = new QGroupBox(QStringLiteral("Order button colours"), page);
    auto* row = new QHBoxLayout(colours);
    m_chkColorOrderButtons = MakeCheck(colours, "chkColorOrderButtons", "Colour the order buttons");
    row->addWidget(m_chkColorOrderButtons);
    const char* names[] = {"cmdBuyColor", "cmdSellColor", "cmdShortColor"};
    const char* captions[] = {"Buy...", "Sell...", "Short..."};
    for (int side = 0; side < 3; ++side) {
        auto* b = new QPushButton(L(captions[side]), colours);
        b->setObjectName(L(names[side]));
        b->setAutoDefault(false);
        m_cmdColor[static_cast<size_t>(side)] = b;
        row->addWidget(b);
        connect(b, &QPushButton::clicked, this, [this, side] { ChooseColor(side); });
    }
    auto* defaults = new QPushButton(QStringLiteral("Default"), colours);
    defaults->setObjectName(QStringLiteral("cmdDefaultColors"));
    defaults->setAutoDefault(false);
    connect(defaults, &QPushButton::clicked, this, [this] {
        m_colors.fill(kButtonFaceColorSetting);
        ShowColors();
    });
    row->addWidget(defaults);
    v->addWidget(colours);
    v->addStretch();
    return page;
}

QWidget* frmGeneralSettings::BuildLimitsPage() {
    auto* page = new QWidget(this);
    auto* form = new QFormLayout(page);
    auto* note = new QLabel(QStringLiteral("A send that breaks a limit lists each offending line; "
                                           "it goes only when the trader types the basket name."),
                            page);
    note->setWordWrap(true);
    form->addRow(note);
    for (const LimitKey& k : LimitKeys()) {
        auto* box = new QLineEdit(page);
        box->setObjectName(Q("txt" + k.key));
        form->addRow(Q(k.label), box);
        m_limitBoxes[k.key] = box;
    }
    return page;
}

QWidget* frmGeneralSettings::BuildImportPage() {
    auto* page = new QWidget(this);
    auto* form = MakeForm(page);
    std::initializer_list<const char*> none{};
    m_cboDefaultListed = MakeChoice(page, QStringLiteral("cboDefaultListed"), none, true);
    m_cboDefaultOTC = MakeChoice(page, QStringLiteral("cboDefaultOTC"), none, true);
    for (QComboBox* c : {m_cboDefaultListed, m_cboDefaultOTC}) {
        c->setMinimumContentsLength(10);
        for (const std::string& d : m_destinations) {
            c->addItem(Q(d));
        }
    }
    form->addRow(new QLabel(QStringLiteral("Destination of imported lines that name none:"), page));
    form->addRow(QStringLiteral("Listed stocks (symbols of 1 to 3 letters):"), m_cboDefaultListed);
    form->addRow(QStringLiteral("OTC stocks (longer symbols):"), m_cboDefaultOTC);
    return page;
}

QWidget* frmGeneralSettings::BuildPlatformPage() {
    auto* page = new QWidget(this);
    auto* v = new QVBoxLayout(page);
    auto* note = new QLabel(QStringLiteral("A change on this page takes effect the next time "
                                           "Wicker starts."),
                            page);
    note->setObjectName(QStringLiteral("lblPlatformNote"));
    note->setWordWrap(true);
    QFont bold = note->font();
    bold.setBold(true);
    note->setFont(bold);
    v->addWidget(note);

    auto* modeRow = MakeForm();
    m_cboMode = MakeChoice(page, QStringLiteral("cboMode"), {"SIM", "FIX"});
    m_cboMode->setToolTip(QStringLiteral("SIM: the built-in simulated market. FIX: a broker "
                                         "over FIX: real orders."));
    m_platformBoxes["Mode"] = m_cboMode;
    modeRow->addRow(QStringLiteral("Trade through:"), m_cboMode);
    v->addLayout(modeRow);
    connect(m_cboMode, &QComboBox::currentTextChanged, this, [this] { ModeChanged(); });

    const auto text = [&](QWidget* parent, QFormLayout* form, const char* key,
                          const char* caption) {
        auto* e = new QLineEdit(parent);
        e->setObjectName(QStringLiteral("txt") + L(key));
        FitToChars(*e, PlatformBoxChars(key));
        m_platformBoxes[key] = e;
        form->addRow(L(caption), e);
    };
    const auto choice = [&](QWidget* parent, QFormLayout* form, const char* key,
                            const char* caption, std::initializer_list<const char*> items) {
        QComboBox* c = MakeChoice(parent, QStringLiteral("cbo") + L(key), items);
        m_platformBoxes[key] = c;
        form->addRow(L(caption), c);
    };

    m_fraFix = new QGroupBox(QStringLiteral("FIX session"), page);
    m_fraFix->setObjectName(QStringLiteral("fraFix"));
    auto* fix = MakeForm(m_fraFix);
    text(m_fraFix, fix, "FixHost", "Host:");
    text(m_fraFix, fix, "FixPort", "Port:");
    text(m_fraFix, fix, "FixSenderCompID", "SenderCompID:");
    text(m_fraFix, fix, "FixTargetCompID", "TargetCompID:");
    choice(m_fraFix, fix, "FixVersion", "FIX version:", {"4.2", "4.4"});
    text(m_fraFix, fix, "FixHeartBtInt", "Heartbeat (seconds):");
    text(m_fraFix, fix, "FixReconnectInterval", "First reconnect after (seconds):");
    auto* reset = MakeCheck(m_fraFix, "chkFixResetOnLogon", "Reset sequence numbers at logon");
    m_platformBoxes["FixResetOnLogon"] = reset;
    fix->addRow(QString(), reset);
    choice(m_fraFix, fix, "FixHandlInst", "HandlInst (21):", {"1", "2", "3"});
    text(m_fraFix, fix, "FixMemoTag", "Memo tag (0 = none):");
    choice(m_fraFix, fix, "FixQuotes", "Quotes:", {"FIX", "NONE"});
    text(m_fraFix, fix, "FixSendWindow", "Orders in flight at most:");
    text(m_fraFix, fix, "FixSettingsFile", "QuickFIX settings file (optional):");

    m_fraSim = new QGroupBox(QStringLiteral("Simulated market"), page);
    m_fraSim->setObjectName(QStringLiteral("fraSim"));
    auto* sim = MakeForm(m_fraSim);
    text(m_fraSim, sim, "SimSeed", "Seed:");
    text(m_fraSim, sim, "SimUpdatesPerSecond", "Quote updates per second:");
    text(m_fraSim, sim, "SimFillDelayMs", "MOO/MOC fill delay (ms):");
    text(m_fraSim, sim, "SimClipSize", "Fill clip size (0 = whole):");
    text(m_fraSim, sim, "SimHalted", "Halted symbols (comma list):");

    auto* limits = new QGroupBox(QStringLiteral("Limits on every order"), page);
    auto* limitRows = MakeForm(limits);
    text(limits, limitRows, "EnabledDestinations", "Enabled destinations (empty = all):");
    text(limits, limitRows, "MaxOrderNotional", "Largest order value in $ (0 = no limit):");

    auto* groups = new QHBoxLayout;
    groups->addWidget(m_fraFix);
    auto* right = new QVBoxLayout;
    right->addWidget(m_fraSim);
    right->addWidget(limits);
    right->addStretch();
    groups->addLayout(right);
    v->addLayout(groups);
    return page;
}

void frmGeneralSettings::Fill(const GeneralSettings& v) {
    ShowChoice(*m_cboShareRounding, QString::number(v.shareRounding));
    m_chkBeforeSending->setChecked(v.beforeSending);
    m_chkBeforeCancel->setChecked(v.beforeCancel);
    m_chkBeforeChange->setChecked(v.beforeChange);
    m_chkBeforeExit->setChecked(v.beforeExit);
    for (const auto& [key, box] : m_limitBoxes) {
        const auto it = v.limits.find(key);
        box->setText(it == v.limits.end() ? QString() : Q(it->second));
    }
    m_chkReserve->setChecked(v.reserveEnabled);
    m_txtReserve->setText(Q(v.reserveQuantity));
    ShowChoice(*m_cboDecimals, QString::number(v.numDecimals));
    m_chkBasketButtons->setChecked(v.basketButtons);
    m_chkBasketInfo->setChecked(v.basketInfoDisplay);
    m_chkShowAll->setChecked(v.basketInfoShowAll);
    {
        // The flags as read: offering a kind is not the trader's toggle here.
        const QSignalBlocker mooBlock(m_chkMOO);
        const QSignalBlocker mocBlock(m_chkMOC);
        m_chkMOO->setChecked(v.moo);
        m_chkMOC->setChecked(v.moc);
    }
    for (OrderSide side : kSides) {
        for (OrderKind kind : kKinds) {
            QCheckBox* c = m_chkButton[ButtonFlagIndex(side, kind)];
            c->setChecked(ButtonShown(v, side, kind));
            c->setEnabled((kind != OrderKind::Moo || v.moo) && (kind != OrderKind::Moc || v.moc));
        }
    }
    m_chkColorOrderButtons->setChecked(v.colorOrderButtons);
    m_colors = {v.buyButtonColor, v.sellButtonColor, v.shortButtonColor};
    ShowColors();
    ShowChoice(*m_cboDefaultListed, Q(v.defaultListed));
    ShowChoice(*m_cboDefaultOTC, Q(v.defaultOTC));
    for (const auto& [key, box] : m_platformBoxes) {
        const auto it = v.platform.find(key);
        SetControlText(box, it == v.platform.end() ? QString() : Q(it->second));
    }
    ModeChanged();
}

GeneralSettings frmGeneralSettings::ReadControls() const {
    GeneralSettings v = m_loaded;
    v.shareRounding = ChosenNumber(*m_cboShareRounding);
    v.beforeSending = m_chkBeforeSending->isChecked();
    v.beforeCancel = m_chkBeforeCancel->isChecked();
    v.beforeChange = m_chkBeforeChange->isChecked();
    v.beforeExit = m_chkBeforeExit->isChecked();
    for (const auto& [key, box] : m_limitBoxes) {
        v.limits[key] = box->text().toStdString();
    }
    v.reserveEnabled = m_chkReserve->isChecked();
    v.reserveQuantity = m_txtReserve->text().toStdString();
    v.numDecimals = ChosenNumber(*m_cboDecimals);
    v.basketButtons = m_chkBasketButtons->isChecked();
    v.basketInfoDisplay = m_chkBasketInfo->isChecked();
    v.basketInfoShowAll = m_chkShowAll->isChecked();
    v.moo = m_chkMOO->isChecked();
    v.moc = m_chkMOC->isChecked();
    for (OrderSide side : kSides) {
        for (OrderKind kind : kKinds) {
            SetButtonShown(v, side, kind, m_chkButton[ButtonFlagIndex(side, kind)]->isChecked());
        }
    }
    v.colorOrderButtons = m_chkColorOrderButtons->isChecked();
    v.buyButtonColor = m_colors[0];
    v.sellButtonColor = m_colors[1];
    v.shortButtonColor = m_colors[2];
    v.defaultListed = m_cboDefaultListed->currentText().toStdString();
    v.defaultOTC = m_cboDefaultOTC->currentText().toStdString();
    for (const auto& [key, box] : m_platformBoxes) {
        v.platform[key] = ControlText(box).toStdString();
    }
    return Normalised(std::move(v));
}

void frmGeneralSettings::OptionalButtonsToggled(OrderKind kind, bool offered) {
    for (OrderSide side : kSides) {
        QCheckBox* c = m_chkButton[ButtonFlagIndex(side, kind)];
        c->setChecked(offered);
        c->setEnabled(offered);
    }
}

void frmGeneralSettings::ChooseColor(int side) {
    const char* titles[] = {"Buy Button Colour", "Sell Button Colour", "Short Button Colour"};
    auto& colour = m_colors[static_cast<size_t>(side)];
    if (const std::optional<int32_t> chosen = m_chooseColor(colour, L(titles[side]))) {
        colour = *chosen;
        ShowColors();
    }
}

void frmGeneralSettings::ShowColors() {
    for (size_t side = 0; side < m_cmdColor.size(); ++side) {
        QPushButton* b = m_cmdColor[side];
        QPalette p = palette();
        const QColor c = ColorFromSetting(m_colors[side], p);
        p.setColor(QPalette::Button, c);
        p.setColor(QPalette::ButtonText, c.lightness() < 110 ? Qt::white : Qt::black);
        b->setPalette(p);
        b->setToolTip(IsSystemColorSetting(m_colors[side])
                          ? QStringLiteral("The system's button colour")
                          : c.name(QColor::HexRgb));
    }
}

void frmGeneralSettings::ModeChanged() {
    const bool fix = m_cboMode->currentText().trimmed().toUpper() == QStringLiteral("FIX");
    m_fraFix->setEnabled(fix);
    m_fraSim->setEnabled(!fix);
}

void frmGeneralSettings::FocusField(const std::string& field) {
    QWidget* box = nullptr;
    if (const auto it = m_platformBoxes.find(field); it != m_platformBoxes.end()) {
        box = it->second;
    } else if (const auto limit = m_limitBoxes.find(field); limit != m_limitBoxes.end()) {
        box = limit->second;
    } else if (field == SettingsField::ShareRounding) {
        box = m_cboShareRounding;
    } else if (field == SettingsField::NumDecimals) {
        box = m_cboDecimals;
    } else if (field == SettingsField::ReserveQuantity) {
        box = m_txtReserve;
    } else if (field == SettingsField::DefaultListed) {
        box = m_cboDefaultListed;
    } else if (field == SettingsField::DefaultOTC) {
        box = m_cboDefaultOTC;
    }
    if (box == nullptr) {
        return;
    }
    for (int i = 0; i < m_tabs->count(); ++i) {
        if (m_tabs->widget(i)->isAncestorOf(box)) {
            m_tabs->setCurrentIndex(i);
        }
    }
    // A box of the platform not chosen is greyed; it must be editable to be put right.
    for (QWidget* w = box->parentWidget(); w != nullptr && w != this; w = w->parentWidget()) {
        w->setEnabled(true);
    }
    box->setFocus();
    if (auto* e = qobject_cast<QLineEdit*>(box)) {
        e->selectAll();
    }
}

bool frmGeneralSettings::Save() {
    const GeneralSettings v = ReadControls();
    if (const auto problem =
            ValidateGeneralSettings(v, m_loaded, m_destinations, m_desk.AppFolder())) {
        m_boxes.show(problem->message, 48, kTitle);
        FocusField(problem->field);
        return false;
    }
    const Result<void> saved = SaveGeneralSettings(m_desk.AppFolder(), v, m_loaded);
    if (!saved) {
        m_boxes.show(saved.error().message, 16, kTitle);
        return false;
    }
    ApplyGeneralSettings(v, m_desk.settings());
    m_desk.SettingsEdited();
    const bool platformChanged = PlatformChanged(v, m_loaded);
    m_loaded = v;
    if (platformChanged) {
        m_boxes.show("The platform settings were saved. They take effect the next time Wicker "
                     "starts.",
                     64, kTitle);
    }
    return true;
}

void ShowGeneralSettings(TradingDesk& desk, MessageBoxes& boxes, QWidget* parent) {
    if (!desk.Loaded()) {
        return;
    }
    frmGeneralSettings dialog(desk, boxes, parent);
    dialog.exec();
}

} // namespace wicker
