#pragma once

#include <vector>

#include <QAbstractItemModel>

namespace wicker::test {

/// Records what a model announced: each dataChanged range, and the rows inserted, removed
/// and the resets.
class ModelSignals {
public:
    struct Range {
        QModelIndex from;
        QModelIndex to;
    };

    explicit ModelSignals(QAbstractItemModel& model) {
        QObject::connect(&model, &QAbstractItemModel::dataChanged, &m_context,
                         [this](const QModelIndex& a, const QModelIndex& b) {
                             changed.push_back({a, b});
                         });
        QObject::connect(&model, &QAbstractItemModel::rowsInserted, &m_context,
                         [this] { ++inserted; });
        QObject::connect(&model, &QAbstractItemModel::rowsRemoved, &m_context,
                         [this] { ++removed; });
        QObject::connect(&model, &QAbstractItemModel::modelReset, &m_context, [this] { ++resets; });
    }

    std::vector<Range> changed;
    int inserted = 0;
    int removed = 0;
    int resets = 0;

private:
    QObject m_context; // disconnects everything when the log goes
};

} // namespace wicker::test
