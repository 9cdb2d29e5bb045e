#include "baskets/ui/frmExportBasket.h"

#include "baskets/BasketExport.h"
#include "baskets/FileChooser.h"
#include "baskets/OrdinaryError.h"
#include "baskets/ui/KeyFilters.h"
#include "baskets/ui/UiText.h"

#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QVBoxLayout>

namespace wicker {

frmExportBasket::frmExportBasket(MessageBoxes& boxes, FileChooser& files,
                                 std::vector<BasketLine> lines,
                                 const std::filesystem::path& proposed, QWidget* parent)
    : QDialog(parent), m_boxes(boxes), m_files(files), m_lines(std::move(lines)),
      m_fileName(new QLineEdit(this)) {
    setObjectName(QStringLiteral("frmExportBasket"));
    setWindowTitle(QStringLiteral("Export Basket"));
    m_fileName->setObjectName(QStringLiteral("ebFilename"));
    m_fileName->setText(ToQ(proposed.string()));
    m_fileName->setMinimumWidth(360);

    auto* browse = new QPushButton(QStringLiteral("Browse"), this);
    browse->setObjectName(QStringLiteral("butBrowse"));
    auto* exportButton = new QPushButton(QStringLiteral("Export"), this);
    exportButton->setObjectName(QStringLiteral("butExport"));
    auto* cancel = new QPushButton(QStringLiteral("Cancel"), this);
    cancel->setObjectName(QStringLiteral("butCancel"));
    for (auto* b : {browse, exportButton, cancel}) {
        b->setAutoDefault(false);
    }

    auto* fileRow = new QHBoxLayout;
    fileRow->addWidget(m_fileName);
    fileRow->addWidget(browse);
    auto* buttons = new QHBoxLayout;
    buttons->addStretch();
    buttons->addWidget(exportButton);
    buttons->addWidget(cancel);
    auto* layout = new QVBoxLayout(this);
    layout->addWidget(new QLabel(QStringLiteral("File Name:"), this));
    layout->addLayout(fileRow);
    layout->addLayout(buttons);

    auto* enter = new EnterPressesButton(exportButton, this);
    enter->watch(m_fileName);
    connect(browse, &QPushButton::clicked, this, &frmExportBasket::browse);
    connect(exportButton, &QPushButton::clicked, this, &frmExportBasket::exportFile);
    connect(cancel, &QPushButton::clicked, this, &QDialog::reject);
}

void frmExportBasket::browse() {
    if (auto chosen = m_files.saveFile("Export", kBasketFileFilter, ToStd(m_fileName->text()))) {
        m_fileName->setText(ToQ(*chosen));
    }
}

void frmExportBasket::exportFile() {
    try {
        ExportBasketFile(ToStd(m_fileName->text()), m_lines);
    } catch (const std::exception& e) {
        ShowOrdinaryError(m_boxes, e);
        m_fileName->setFocus();
        return;
    }
    accept();
}

} // namespace wicker
