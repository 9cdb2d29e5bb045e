#pragma once

#include "storage/BasketDatabase.h"

#include <cstdint>
#include <optional>
#include <vector>

#include <QDialog>

class QLineEdit;

namespace wicker {

class Database;
class MessageBoxes;

/// Stores the basket loaded on the main screen under a new name. After the dialog
/// closes, savedBasketNum() holds the new basket's number (the main screen makes it
/// the loaded basket's number).
class frmSaveAs : public QDialog {
    Q_OBJECT

public:
    frmSaveAs(Database& db, MessageBoxes& boxes, std::vector<BasketLine> lines,
              QWidget* parent = nullptr);

    std::optional<int16_t> savedBasketNum() const { return m_saved; }

private:
    void save();

    Database& m_db;
    MessageBoxes& m_boxes;
    std::vector<BasketLine> m_lines;
    QLineEdit* m_name;
    QLineEdit* m_button;
    std::optional<int16_t> m_saved;
};

} // namespace wicker
