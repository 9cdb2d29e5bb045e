#pragma once

#include "storage/BasketDatabase.h"

#include <filesystem>
#include <vector>

#include <QDialog>

class QLineEdit;

namespace wicker {

class FileChooser;
class MessageBoxes;

/// Writes the lines shown on the setup screen to a basket text file.
class frmExportBasket : public QDialog {
    Q_OBJECT

public:
    /// `proposed` is the path the file box starts with.
    frmExportBasket(MessageBoxes& boxes, FileChooser& files, std::vector<BasketLine> lines,
                    const std::filesystem::path& proposed, QWidget* parent = nullptr);

private:
    void browse();
    void exportFile();

    MessageBoxes& m_boxes;
    FileChooser& m_files;
    std::vector<BasketLine> m_lines;
    QLineEdit* m_fileName;
};

} // namespace wicker
