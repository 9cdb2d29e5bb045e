#include "baskets/ui/TextTableModel.h"

#include <gtest/gtest.h>

namespace wicker {
namespace {

TextTableModel::Row MakeRow(const char* a, const char* b, bool checked = false) {
    return {{QString::fromLatin1(a), QString::fromLatin1(b)}, QString::fromLatin1(a), checked};
}

class TextTableModelTest : public testing::Test {
protected:
    TextTableModel checkable{{QStringLiteral("Basket"), QStringLiteral("Button")}, true};
    TextTableModel plain{{QStringLiteral("Symbol"), QStringLiteral("Qty")}, false};
};

TEST_F(TextTableModelTest, HeadersCellsAndShortRows) {
    checkable.setRows({MakeRow("Tech", "TK"), {{QStringLiteral("Solo")}, QString(), false}});
    EXPECT_EQ(checkable.headerData(1, Qt::Horizontal, Qt::DisplayRole).toString().toStdString(),
              "Button");
    EXPECT_EQ(checkable.rowCount(), 2);
    EXPECT_EQ(checkable.columnCount(), 2);
    EXPECT_EQ(checkable.index(0, 1).data().toString().toStdString(), "TK");
    // A row with fewer cells shows empty text, not garbage.
    EXPECT_TRUE(checkable.index(1, 1).data().toString().isEmpty());
    // Children of a row do not exist: it is a flat list.
    EXPECT_EQ(checkable.rowCount(checkable.index(0, 0)), 0);
}

TEST_F(TextTableModelTest, OnlyColumnZeroOfACheckableModelTakesATick) {
    checkable.setRows({MakeRow("Tech", "TK")});
    EXPECT_TRUE(checkable.flags(checkable.index(0, 0)) & Qt::ItemIsUserCheckable);
    EXPECT_FALSE(checkable.flags(checkable.index(0, 1)) & Qt::ItemIsUserCheckable);
    EXPECT_FALSE(checkable.setData(checkable.index(0, 1), Qt::Checked, Qt::CheckStateRole));
    EXPECT_FALSE(checkable.setData(checkable.index(0, 0), QStringLiteral("x"), Qt::EditRole));
    int changes = 0;
    QObject::connect(&checkable, &QAbstractItemModel::dataChanged, &checkable, [&] { ++changes; });
    EXPECT_TRUE(checkable.setData(checkable.index(0, 0), Qt::Checked, Qt::CheckStateRole));
    EXPECT_TRUE(checkable.rowAt(0).checked);
    EXPECT_EQ(checkable.index(0, 0).data(Qt::CheckStateRole).toInt(), Qt::Checked);
    EXPECT_EQ(changes, 1);

    plain.setRows({MakeRow("IBM", "1")});
    EXPECT_FALSE(plain.flags(plain.index(0, 0)) & Qt::ItemIsUserCheckable);
    EXPECT_FALSE(plain.index(0, 0).data(Qt::CheckStateRole).isValid());
}

TEST_F(TextTableModelTest, AppendRemoveAndSetCellSignalTheView) {
    int inserted = 0;
    int removed = 0;
    int changed = 0;
    QObject::connect(&plain, &QAbstractItemModel::rowsInserted, &plain, [&] { ++inserted; });
    QObject::connect(&plain, &QAbstractItemModel::rowsRemoved, &plain, [&] { ++removed; });
    QObject::connect(&plain, &QAbstractItemModel::dataChanged, &plain, [&] { ++changed; });
    plain.appendRow(MakeRow("A", "1"));
    plain.appendRow(MakeRow("B", "2"));
    plain.setCell(1, 1, QStringLiteral("20"));
    plain.removeRowAt(0);
    plain.removeRowAt(5); // out of range: ignored
    plain.setCell(3, 0, QStringLiteral("x"));
    EXPECT_EQ(inserted, 2);
    EXPECT_EQ(removed, 1);
    EXPECT_EQ(changed, 1);
    ASSERT_EQ(plain.rowCount(), 1);
    EXPECT_EQ(plain.rowAt(0).cells.at(1).toStdString(), "20");
    EXPECT_EQ(plain.rowAt(0).key.toStdString(), "B");
}

TEST_F(TextTableModelTest, FiveThousandRowsAreOneReset) {
    std::vector<TextTableModel::Row> rows;
    for (int i = 0; i < 5000; ++i) {
        rows.push_back({{QString::number(i), QStringLiteral("100")}, QString::number(i), false});
    }
    int resets = 0;
    QObject::connect(&plain, &QAbstractItemModel::modelReset, &plain, [&] { ++resets; });
    plain.setRows(std::move(rows));
    EXPECT_EQ(resets, 1);
    EXPECT_EQ(plain.rowCount(), 5000);
    EXPECT_EQ(plain.index(4999, 0).data().toString().toStdString(), "4999");
}

} // namespace
} // namespace wicker
