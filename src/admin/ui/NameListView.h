#pragma once

#include <string>
#include <vector>

class QTableView;
class QWidget;

namespace wicker {

class TextTableModel;

/// The one-column list of the account and destination screens (lvAccounts, lvDest).
struct NameListView {
    QTableView* view;
    TextTableModel* model;
};

/// A one-column list without headers, one row selected at a time.
NameListView MakeNameListView(QWidget* parent, const char* objectName);

/// The names in list order.
std::vector<std::string> NamesOf(const TextTableModel& model);
/// Appends a name.
void AppendName(TextTableModel& model, const std::string& name);
/// Removes the selected row, when there is one.
void RemoveSelectedName(const NameListView& list);

} // namespace wicker
