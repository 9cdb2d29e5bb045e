#include "baskets/ui/frmImportBasket.h"

#include "baskets/BasketImport.h"
#include "baskets/FileChooser.h"
#include "baskets/MainScreenLink.h"
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

} // namespace

frmImportBasket::frmImportBasket(Database& db, MessageBoxes& boxes, FileChooser& files,
                                 MainScreenLink& main, const ImportDefaults& defaults,
                                 QWidget* parent)
    : QDialog(parent), m_db(db), m_boxes(boxes), m_files(files), m_main(main), m_fields(this) {
    setObjectName(QStringLiteral("frmImportBasket"));
    setWindowTitle(QStringLiteral("Import Basket"));
    auto* importButton = new QPushButton(QStringLiteral("Import"), this);
    importButton->setObjectName(QStringLiteral("cmdImport"));
    auto* layout = new QVBoxLayout(this);
    layout->addLayout(m_fields.form());
    layout->addLayout(ImportFields::ButtonRow(*this, importButton));

    auto* enter = new EnterPressesButton(importButton, this);
    for (QWidget* w : std::initializer_list<QWidget*>{
             m_fields.name, m_fields.button, m_fields.fileName, m_fields.listed, m_fields.otc}) {
        enter->watch(w);
    }
    connect(m_fields.open, &QPushButton::clicked, this, &frmImportBasket::chooseFile);
    connect(importButton, &QPushButton::clicked, this, &frmImportBasket::import);
    m_fields.fillDestinations(m_db, m_boxes, defaults);
}

void frmImportBasket::chooseFile() {
    if (auto chosen = m_files.openFile("Import Basket", kBasketFileFilter,
                                       ToStd(m_fields.fileName->text()))) {
        m_fields.fileName->setText(ToQ(*chosen));
    }
}

void frmImportBasket::import() {
    const BasketImportRequest request{ToStd(m_fields.name->text()), ToStd(m_fields.button->text()),
                                      ToStd(m_fields.fileName->text()),
                                      ImportFields::DefaultText(*m_fields.listed),
                                      ImportFields::DefaultText(*m_fields.otc)};
    ImportFocus focus = ImportFocus::None;
    auto started = StartBasketImport(m_db, m_boxes, request, focus);
    if (!started) {
        switch (focus) {
        case ImportFocus::BasketName:
            m_fields.name->setFocus();
            break;
        case ImportFocus::ButtonName:
            m_fields.button->setFocus();
            break;
        case ImportFocus::FileName:
            m_fields.fileName->setFocus();
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
