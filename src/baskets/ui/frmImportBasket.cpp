#include "baskets/ui/frmImportBasket.h"

#include "baskets/BasketImport.h"
#include "baskets/Destinations.h"
#include "baskets/FileChooser.h"
#include "baskets/MainScreenLink.h"
#include "baskets/OrdinaryError.h"
#include "baskets/ui/DialogSupport.h"
#include "baskets/ui/KeyFilters.h"
#include "baskets/ui/UiText.h"

#include <QComboBox>
#include <QFormLayout>
#include <QHBoxLayout>
#include <QLineEdit>
#include <QProgressDialog>
#include <QPushButton>
#include <QVBoxLayout>

namespace wicker {
namespace {

constexpr int kProgressSteps = 1000;

void Preselect(QComboBox& combo, const std::string& destination) {
    const int at = combo.findText(ToQ(destination), Qt::MatchExactly);
    combo.setCurrentIndex(at < 0 ? 0 : at);
}

} // namespace

frmImportBasket::frmImportBasket(Database& db, MessageBoxes& boxes, FileChooser& files,
                                 MainScreenLink& main, const ImportDefaults& defaults,
                                 QWidget* parent)
    : QDialog(parent), m_db(db), m_boxes(boxes), m_files(files), m_main(main),
      m_name(new QLineEdit(this)), m_button(new QLineEdit(this)), m_fileName(new QLineEdit(this)),
      m_listed(new QComboBox(this)), m_otc(new QComboBox(this)) {
    setObjectName(QStringLiteral("frmImportBasket"));
    setWindowTitle(QStringLiteral("Import Basket"));
    m_name->setObjectName(QStringLiteral("txtBasketName"));
    m_button->setObjectName(QStringLiteral("txtButtonName"));
    m_fileName->setObjectName(QStringLiteral("txtFileName"));
    m_fileName->setMinimumWidth(300);
    m_listed->setObjectName(QStringLiteral("cboListed"));
    m_otc->setObjectName(QStringLiteral("cboOTC"));

    auto* open = new QPushButton(QStringLiteral("..."), this);
    open->setObjectName(QStringLiteral("cmdOpenFile"));
    auto* importButton = new QPushButton(QStringLiteral("Import"), this);
    importButton->setObjectName(QStringLiteral("cmdImport"));
    auto* cancel = new QPushButton(QStringLiteral("Cancel"), this);
    cancel->setObjectName(QStringLiteral("cndCancel"));
    for (auto* b : {open, importButton, cancel}) {
        b->setAutoDefault(false);
    }

    auto* fileRow = new QHBoxLayout;
    fileRow->addWidget(m_fileName);
    fileRow->addWidget(open);
    auto* form = new QFormLayout;
    form->addRow(QStringLiteral("Basket Name:"), m_name);
    form->addRow(QStringLiteral("Button Name:"), m_button);
    form->addRow(QStringLiteral("File:"), fileRow);
    form->addRow(QStringLiteral("Default Listed Destination:"), m_listed);
    form->addRow(QStringLiteral("Default OTC Destination:"), m_otc);
    auto* buttons = new QHBoxLayout;
    buttons->addStretch();
    buttons->addWidget(importButton);
    buttons->addWidget(cancel);
    auto* layout = new QVBoxLayout(this);
    layout->addLayout(form);
    layout->addLayout(buttons);

    auto* enter = new EnterPressesButton(importButton, this);
    for (QWidget* w :
         std::initializer_list<QWidget*>{m_name, m_button, m_fileName, m_listed, m_otc}) {
        enter->watch(w);
    }
    connect(open, &QPushButton::clicked, this, &frmImportBasket::chooseFile);
    connect(importButton, &QPushButton::clicked, this, &frmImportBasket::import);
    connect(cancel, &QPushButton::clicked, this, &QDialog::reject);

    std::vector<std::string> destinations;
    try {
        destinations = EnabledDestinations(m_db, true);
    } catch (const std::exception& e) {
        ShowOrdinaryError(m_boxes, e);
    }
    for (QComboBox* combo : {m_listed, m_otc}) {
        combo->addItem(QString::fromLatin1(kNoDestination));
        FillCombo(*combo, destinations);
    }
    Preselect(*m_listed, defaults.listed);
    Preselect(*m_otc, defaults.otc);
}

std::string frmImportBasket::defaultText(const QComboBox& combo) const {
    return combo.currentIndex() <= 0 ? std::string() : ToStd(combo.currentText());
}

void frmImportBasket::chooseFile() {
    if (auto chosen =
            m_files.openFile("Import Basket", kBasketFileFilter, ToStd(m_fileName->text()))) {
        m_fileName->setText(ToQ(*chosen));
    }
}

void frmImportBasket::import() {
    const BasketImportRequest request{ToStd(m_name->text()), ToStd(m_button->text()),
                                      ToStd(m_fileName->text()), defaultText(*m_listed),
                                      defaultText(*m_otc)};
    ImportFocus focus = ImportFocus::None;
    auto started = StartBasketImport(m_db, m_boxes, request, focus);
    if (!started) {
        switch (focus) {
        case ImportFocus::BasketName:
            m_name->setFocus();
            break;
        case ImportFocus::ButtonName:
            m_button->setFocus();
            break;
        case ImportFocus::FileName:
            m_fileName->setFocus();
            break;
        case ImportFocus::None:
            break;
        }
        return;
    }
    run(*started);
    for (const auto& [symbol, shares] : started->indexShares()) {
        m_main.RecordIndexShares(started->basketNum(), symbol, shares);
    }
    ReportBasketImport(m_boxes, *started);
    accept();
}

void frmImportBasket::run(BasketFileImport& import) {
    QProgressDialog progress(QStringLiteral("Importing basket..."), QStringLiteral("Cancel"), 0,
                             kProgressSteps, this);
    progress.setObjectName(QStringLiteral("importProgress"));
    progress.setWindowTitle(QStringLiteral("Import Basket"));
    progress.setWindowModality(Qt::WindowModal);
    progress.setMinimumDuration(m_progressDelayMs);
    progress.setAutoClose(false);
    progress.setAutoReset(false);
    progress.setValue(0);
    const double total = static_cast<double>(std::max<uint64_t>(import.totalBytes(), 1));
    while (import.step(m_linesPerStep)) {
        // setValue lets the window paint and the cancel button work between steps.
        progress.setValue(static_cast<int>(static_cast<double>(import.bytesRead()) / total *
                                           (kProgressSteps - 1)));
        if (progress.wasCanceled()) {
            import.cancel();
        }
    }
    progress.setValue(kProgressSteps);
}

} // namespace wicker
