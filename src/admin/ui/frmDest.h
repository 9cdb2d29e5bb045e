#pragma once

#include "admin/ui/NameListView.h"

#include <string>

#include <QDialog>

class QPushButton;

namespace wicker {

class Database;
class MessageBoxes;

/// "Destination Setup": edits the destinations in memory; OK rewrites tblDest whole
/// (every destination enabled), Cancel leaves it alone.
class frmDest : public QDialog {
    Q_OBJECT

public:
    frmDest(Database& db, MessageBoxes& boxes, QWidget* parent = nullptr);

private:
    void load();
    void addDestination();
    void save();

    Database& m_db;
    MessageBoxes& m_boxes;
    NameListView m_list;
    QPushButton* m_ok = nullptr;
};

} // namespace wicker
