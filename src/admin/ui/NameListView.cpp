#include "admin/ui/NameListView.h"

#include "baskets/ui/TextTableModel.h"
#include "baskets/ui/UiText.h"

#include <QHeaderView>
#include <QTableView>

namespace wicker {

NameListView MakeNameListView(QWidget* parent, const char* objectName) {
    auto* view = new QTableView(parent);
    auto* model = new TextTableModel({QString()}, false, view);
    view->setObjectName(QString::fromLatin1(objectName));
    view->setModel(model);
    view->setSelectionBehavior(QAbstractItemView::SelectRows);
    view->setSelectionMode(QAbstractItemView::SingleSelection);
    view->setEditTriggers(QAbstractItemView::NoEditTriggers);
    view->verticalHeader()->hide();
    view->horizontalHeader()->hide();
    view->horizontalHeader()->setStretchLastSection(true);
    return {view, model};
}

std::vector<std::string> NamesOf(const TextTableModel& model) {
    std::vector<std::string> names;
    names.reserve(model.rows().size());
    for (const auto& row : model.rows()) {
        names.push_back(ToStd(row.cells.value(0)));
    }
    return names;
}

void AppendName(TextTableModel& model, const std::string& name) {
    model.appendRow({{ToQ(name)}, ToQ(name), false});
}

void RemoveSelectedName(const NameListView& list) {
    const QModelIndex current = list.view->currentIndex();
    if (current.isValid()) {
        list.model->removeRowAt(current.row());
    }
}

} // namespace wicker
