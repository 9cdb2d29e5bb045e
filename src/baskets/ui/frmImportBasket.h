#pragma once

#include "baskets/ImportDefaults.h"
#include "baskets/ui/ImportFields.h"

#include <cstddef>

#include <QDialog>

namespace wicker {

class BasketFileImport;
class Database;
class FileChooser;
class MainScreenLink;
class MessageBoxes;

/// Creates a basket from a basket text file. Long files are read in steps under a
/// progress dialog that can cancel; the window stays responsive meanwhile.
class frmImportBasket : public QDialog {
    Q_OBJECT

public:
    frmImportBasket(Database& db, MessageBoxes& boxes, FileChooser& files, MainScreenLink& main,
                    const ImportDefaults& defaults, QWidget* parent = nullptr);

    /// Lines imported between two updates of the progress dialog.
    void setLinesPerStep(size_t lines) { m_linesPerStep = lines; }
    /// How long an import runs before the progress dialog shows (milliseconds).
    void setProgressDelay(int ms) { m_progressDelayMs = ms; }

private:
    void chooseFile();
    void import();
    void run(BasketFileImport& import);

    Database& m_db;
    MessageBoxes& m_boxes;
    FileChooser& m_files;
    MainScreenLink& m_main;
    ImportFields m_fields;
    size_t m_linesPerStep = 500;
    int m_progressDelayMs = 500;
};

} // namespace wicker
