#pragma once

#include "baskets/ImportDefaults.h"
#include "baskets/SpreadsheetBasket.h"
#include "baskets/ui/ImportFields.h"

#include <QDialog>

class QLabel;
class QPushButton;
class QTableView;

namespace wicker {

class Database;
class FileChooser;
class MainScreenLink;
class MessageBoxes;
class SpreadsheetPreviewModel;

/// Creates a basket from a spreadsheet's CSV, TSV or semicolon export. The file is read
/// and checked as soon as it is chosen, and every line is shown with its problems; the
/// basket is stored only when no line has an error, all of it in one go.
class frmImportSpreadsheet : public QDialog {
    Q_OBJECT

public:
    frmImportSpreadsheet(Database& db, MessageBoxes& boxes, FileChooser& files,
                         MainScreenLink& main, const ImportDefaults& defaults,
                         QWidget* parent = nullptr);

    /// Reads and checks the file named in the file box again.
    void preview();
    const SpreadsheetBasket& basket() const { return m_basket; }

private:
    void chooseFile();
    void import();
    SpreadsheetDefaults defaults() const;

    Database& m_db;
    MessageBoxes& m_boxes;
    FileChooser& m_files;
    MainScreenLink& m_main;
    std::vector<std::string> m_destinations;
    SpreadsheetBasket m_basket;
    ImportFields m_fields;
    QLabel* m_summary;
    QTableView* m_view;
    SpreadsheetPreviewModel* m_model;
    QPushButton* m_import;
};

} // namespace wicker
