#include "baskets/ui/frmImportSpreadsheet.h"

#include "baskets/Destinations.h"
#include "baskets/FileChooser.h"
#include "baskets/MainScreenLink.h"
#include "baskets/OrdinaryError.h"
#include "baskets/SpreadsheetImport.h"
#include "baskets/ui/DialogSupport.h"
#include "baskets/ui/SpreadsheetPreviewModel.h"
#include "baskets/ui/UiText.h"
#include "baskets/ui/frmImportBasket.h"

#include <filesystem>

#include <QComboBox>
#include <QFormLayout>
#include <QHBoxLayout>
#include <QHeaderView>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QTableView>
#include <QVBoxLayout>

namespace wicker {
namespace {

constexpr const char* kSpreadsheetFilter = "Spreadsheet Files (*.csv *.tsv *.txt);;All Files (*)";
constexpr int kMaxButtonChars = 50;  // tblBaskets.strButtonName
constexpr int kMaxBasketChars = 100; // tblBaskets.strBasketName

void Preselect(QComboBox& combo, const std::string& destination) {
    const int at = combo.findText(ToQ(destination), Qt::MatchExactly);
    combo.setCurrentIndex(at < 0 ? 0 : at);
}

std::string DefaultText(const QComboBox& combo) {
    return combo.currentIndex() <= 0 ? std::string() : ToStd(combo.currentText());
}

} // namespace

frmImportSpreadsheet::frmImportSpreadsheet(Database& db, MessageBoxes& boxes, FileChooser& files,
                                           MainScreenLink& main, const ImportDefaults& defaults,
                                           QWidget* parent)
    : QDialog(parent), m_db(db), m_boxes(boxes), m_files(files), m_main(main),
      m_name(new QLineEdit(this)), m_button(new QLineEdit(this)), m_fileName(new QLineEdit(this)),
      m_listed(new QComboBox(this)), m_otc(new QComboBox(this)), m_summary(new QLabel(this)),
      m_view(new QTableView(this)), m_model(new SpreadsheetPreviewModel(this)),
      m_import(new QPushButton(QStringLiteral("Import"), this)) {
    setObjectName(QStringLiteral("frmImportSpreadsheet"));
    setWindowTitle(QStringLiteral("Import from Spreadsheet"));
    m_name->setObjectName(QStringLiteral("txtBasketName"));
    m_name->setMaxLength(kMaxBasketChars);
    m_button->setObjectName(QStringLiteral("txtButtonName"));
    m_button->setMaxLength(kMaxButtonChars);
    m_fileName->setObjectName(QStringLiteral("txtFileName"));
    m_fileName->setMinimumWidth(360);
    m_listed->setObjectName(QStringLiteral("cboListed"));
    m_otc->setObjectName(QStringLiteral("cboOTC"));
    m_summary->setObjectName(QStringLiteral("lblSummary"));
    m_summary->setWordWrap(true);
    m_summary->setTextInteractionFlags(Qt::TextSelectableByMouse);
    m_view->setObjectName(QStringLiteral("lvPreview"));
    m_view->setModel(m_model);
    m_view->setSelectionBehavior(QAbstractItemView::SelectRows);
    m_view->setEditTriggers(QAbstractItemView::NoEditTriggers);
    m_view->verticalHeader()->hide();
    m_view->verticalHeader()->setDefaultSectionSize(m_view->fontMetrics().height() + 6);
    m_view->horizontalHeader()->setStretchLastSection(true);
    m_view->setMinimumSize(720, 300);
    m_import->setObjectName(QStringLiteral("cmdImport"));
    m_import->setEnabled(false);

    auto* open = new QPushButton(QStringLiteral("..."), this);
    open->setObjectName(QStringLiteral("cmdOpenFile"));
    open->setAccessibleName(QStringLiteral("Choose file"));
    auto* cancel = new QPushButton(QStringLiteral("Cancel"), this);
    cancel->setObjectName(QStringLiteral("cndCancel"));
    for (auto* b : {open, m_import, cancel}) {
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
    buttons->addWidget(m_import);
    buttons->addWidget(cancel);
    auto* layout = new QVBoxLayout(this);
    layout->addLayout(form);
    layout->addWidget(m_summary);
    layout->addWidget(m_view, 1);
    layout->addLayout(buttons);

    try {
        m_destinations = EnabledDestinations(m_db, true);
    } catch (const std::exception& e) {
        ShowOrdinaryError(m_boxes, e);
    }
    for (QComboBox* combo : {m_listed, m_otc}) {
        combo->addItem(QString::fromLatin1(frmImportBasket::kNoDestination));
        FillCombo(*combo, m_destinations);
    }
    Preselect(*m_listed, defaults.listed);
    Preselect(*m_otc, defaults.otc);

    connect(open, &QPushButton::clicked, this, &frmImportSpreadsheet::chooseFile);
    connect(m_fileName, &QLineEdit::editingFinished, this, &frmImportSpreadsheet::preview);
    connect(m_listed, &QComboBox::currentIndexChanged, this, &frmImportSpreadsheet::preview);
    connect(m_otc, &QComboBox::currentIndexChanged, this, &frmImportSpreadsheet::preview);
    connect(m_import, &QPushButton::clicked, this, &frmImportSpreadsheet::import);
    connect(cancel, &QPushButton::clicked, this, &QDialog::reject);
    m_summary->setText(QStringLiteral("Choose a CSV, tab- or semicolon-separated file."));
}

SpreadsheetDefaults frmImportSpreadsheet::defaults() const {
    return {DefaultText(*m_listed), DefaultText(*m_otc), m_destinations};
}

void frmImportSpreadsheet::chooseFile() {
    const auto chosen =
        m_files.openFile("Import from Spreadsheet", kSpreadsheetFilter, ToStd(m_fileName->text()));
    if (!chosen) {
        return;
    }
    m_fileName->setText(ToQ(*chosen));
    // The file's name is the likely basket name; a name already typed stays.
    const QString stem = ToQ(std::filesystem::path(*chosen).stem().string());
    if (m_name->text().isEmpty()) {
        m_name->setText(stem.left(kMaxBasketChars));
    }
    if (m_button->text().isEmpty()) {
        m_button->setText(stem.left(kMaxButtonChars));
    }
    preview();
}

void frmImportSpreadsheet::preview() {
    m_model->setBasket(nullptr);
    if (m_fileName->text().isEmpty()) {
        m_basket = SpreadsheetBasket{};
        m_summary->setText(QStringLiteral("Choose a CSV, tab- or semicolon-separated file."));
        m_import->setEnabled(false);
        return;
    }
    m_basket = LoadSpreadsheetBasket(std::filesystem::path(ToStd(m_fileName->text())), defaults());
    m_model->setBasket(&m_basket);
    m_view->resizeColumnsToContents();
    QString summary = ToQ(SpreadsheetSummary(m_basket));
    if (m_basket.storable()) {
        summary += QStringLiteral(" Ready to import.");
    } else if (m_basket.fileErrors.empty()) {
        summary += QStringLiteral(" Nothing is imported while a line has an error: correct the "
                                  "file and choose it again.");
    }
    m_summary->setText(summary);
    m_import->setEnabled(m_basket.storable());
}

void frmImportSpreadsheet::import() {
    // The file may have changed since it was shown: store what is read now, checked again.
    preview();
    const auto result =
        StoreSpreadsheetBasket(m_db, m_basket, ToStd(m_name->text()), ToStd(m_button->text()));
    if (!result.refusal.empty()) {
        m_boxes.show(result.refusal, 48, result.title);
        switch (result.focus) {
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
    for (const auto& [symbol, shares] : result.indexShares) {
        m_main.RecordIndexShares(result.basketNum, symbol, shares);
    }
    accept();
}

} // namespace wicker
