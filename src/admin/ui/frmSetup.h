#pragma once

#include "admin/ui/NameListView.h"

#include <functional>
#include <string>

#include <QDialog>

class QComboBox;
class QPushButton;

namespace wicker {

class Database;
class MessageBoxes;

/// "Account Setup": edits the accounts and the default account in memory; OK rewrites
/// tblAccount whole, Cancel leaves it alone.
class frmSetup : public QDialog {
    Q_OBJECT

public:
    /// `refreshAccounts` runs after the accounts were saved (the main screen reads its
    /// account list again).
    frmSetup(Database& db, MessageBoxes& boxes, std::function<void()> refreshAccounts,
             QWidget* parent = nullptr);

private:
    void load();
    void addAccount();
    void addName(const std::string& typed);
    void save();

    Database& m_db;
    MessageBoxes& m_boxes;
    std::function<void()> m_refreshAccounts;
    NameListView m_list;
    QComboBox* m_default;
    QPushButton* m_ok = nullptr;
};

} // namespace wicker
