#include "baskets/ui/frmImportSpreadsheet.h"

#include "baskets/FileChooser.h"
#include "baskets/MainScreenLink.h"
#include "baskets/SpreadsheetImport.h"
#include "baskets/ui/SpreadsheetPreviewModel.h"
#include "baskets/ui/UiText.h"

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

} // namespace

frmImportSpreadsheet::frmImportSpreadsheet(Database& db, MessageBoxes& boxes, FileChooser& files,
                                           MainScreenLink& main, const ImportDefaults& defaults,
                                           QWidget* parent)
    : QDialog(parent), m_db(db), m_boxes(boxes), m_files(files), m_main(main), m_fields(this),
      m_summary(new QLabel(this)), m_view(new QTableView(this)),
      m_model(new SpreadsheetPreviewModel(this)),
      m_import(new QPushButton(QStringLiteral("Import"), this)) {
    setObjectName(QStringLiteral("frmImportSpreadsheet"));
    setWindowTitle(QStringLiteral("Import from Spreadsheet"));
    m_fields.name->setMaxLength(kMaxBasketChars);
    m_fields.button->setMaxLength(kMaxButtonChars);
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

    auto* layout = new QVBoxLayout(this);
    layout->addLayout(m_fields.form());
    layout->addWidget(m_summary);
    layout->addWidget(m_view, 1);
    layout->addLayout(ImportFields::ButtonRow(*this, m_import));

    m_destinations = m_fields.fillDestinations(m_db, m_boxes, defaults);

    connect(m_fields.open, &QPushButton::clicked, this, &frmImportSpreadsheet::chooseFile);
    connect(m_fields.fileName, &QLineEdit::editingFinished, this, &frmImportSpreadsheet::preview);
    connect(m_fields.listed, &QComboBox::currentIndexChanged, this, &frmImportSpreadsheet::preview);
    connect(m_fields.otc, &QComboBox::currentIndexChanged, this, &frmImportSpreadsheet::preview);
    connect(m_import, &QPushButton::clicked, this, &frmImportSpreadsheet::import);
    m_summary->setText(QStringLiteral("Choose a CSV, tab- or semicolon-separated file."));
}

SpreadsheetDefaults frmImportSpreadsheet::defaults() const {
    return {ImportFields::DefaultText(*m_fields.listed), ImportFields::DefaultText(*m_fields.otc),
            m_destinations};
}

void frmImportSpreadsheet::chooseFile() {
    const auto chosen = m_files.openFile("Import from Spreadsheet", kSpreadsheetFilter,
                                         ToStd(m_fields.fileName->text()));
    if (!chosen) {
        return;
    }
    m_fields.fileName->setText(ToQ(*chosen));
    // The file's name is the likely basket name; a name already typed stays.
    const QString stem = ToQ(std::filesystem::path(*chosen).stem().string());
    if (m_fields.name->text().isEmpty()) {
        m_fields.name->setText(stem.left(kMaxBasketChars));
    }
    if (m_fields.button->text().isEmpty()) {
        m_fields.button->setText(stem.left(kMaxButtonChars));
    }
    preview();
}

void frmImportSpreadsheet::preview() {
    m_model->setBasket(nullptr);
    if (m_fields.fileName->text().isEmpty()) {
        m_basket = SpreadsheetBasket{};
        m_summary->setText(QStringLiteral("Choose a CSV, tab- or semicolon-separated file."));
        m_import->setEnabled(false);
        return;
    }
    m_basket =
        LoadSpreadsheetBasket(std::filesystem::path(ToStd(m_fields.fileName->text())), defaults());
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
    const auto result = StoreSpreadsheetBasket(m_db, m_basket, ToStd(m_fields.name->text()),
                                               ToStd(m_fields.button->text()));
    if (!result.refusal.empty()) {
        m_boxes.show(result.refusal, 48, result.title);
        switch (result.focus) {
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
    for (const auto& [symbol, shares] : result.indexShares) {
        m_main.RecordIndexShares(result.basketNum, symbol, shares);
    }
    accept();
}

} // namespace wicker
