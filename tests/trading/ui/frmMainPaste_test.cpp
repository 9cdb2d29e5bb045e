// Pasting and dropping tab-separated text onto the main window's stock list, and text no
// spreadsheet ever produced.

#include "trading/basket/StockList.h"
#include "trading/ui/MainBasketEditing.h"
#include "trading/ui/MainScreenFixture.h"

#include <chrono>
#include <random>

#include <QApplication>
#include <QClipboard>
#include <QDropEvent>
#include <QKeyEvent>
#include <QMenu>
#include <QMimeData>

namespace wicker::test {
namespace {

using namespace std::chrono_literals;

class MainPaste : public MainScreen {
protected:
    void SetClipboard(const QString& text) { QGuiApplication::clipboard()->setText(text); }

    void CtrlV() {
        QKeyEvent press(QEvent::KeyPress, Qt::Key_V, Qt::ControlModifier, QStringLiteral("\x16"));
        QApplication::sendEvent(&Stocks(), &press);
        QKeyEvent release(QEvent::KeyRelease, Qt::Key_V, Qt::ControlModifier);
        QApplication::sendEvent(&Stocks(), &release);
    }

    /// Opens the Edit menu as the trader would; says whether its Paste item is offered.
    bool EditMenuOffersPaste() {
        emit Find<QMenu>("mnuEdit").aboutToShow();
        return Action("mnuEditPaste").isEnabled();
    }

    /// Drags text over lvStocks and drops it; says whether the drag was accepted.
    bool DropText(const QString& text) {
        QMimeData data;
        data.setText(text);
        QWidget* viewport = Stocks().viewport();
        const QPoint at(10, 10);
        QDragEnterEvent enter(at, Qt::CopyAction, &data, Qt::LeftButton, Qt::NoModifier);
        QApplication::sendEvent(viewport, &enter);
        QDropEvent drop(QPointF(at), Qt::CopyAction, &data, Qt::LeftButton, Qt::NoModifier);
        QApplication::sendEvent(viewport, &drop);
        return enter.isAccepted() && drop.isAccepted();
    }

    std::vector<std::string> Column(int column) const {
        std::vector<std::string> out;
        for (int row = 0; row < Rows(Stocks()); ++row) {
            out.push_back(Cell(Stocks(), row, column));
        }
        return out;
    }

    std::string BasketName() const { return Find<QLabel>("labelName").text().toStdString(); }
};

TEST_F(MainPaste, CtrlVLoadsSpreadsheetRowsWithTheFixedDefaultDestinations) {
    Open();
    Click("cmdLoad_1");
    // A Linux spreadsheet's copy: line feeds alone, a line break after the last row.
    SetClipboard(QStringLiteral("IBM\t100\nGOOGL\t50\nKO\t30\tbats\n"));
    CtrlV();
    EXPECT_EQ(Column(stkSymbol), (std::vector<std::string>{"IBM", "GOOGL", "KO"}));
    EXPECT_EQ(Column(stkBasketQty), (std::vector<std::string>{"100", "50", "30"}));
    EXPECT_EQ(Column(stkDest), (std::vector<std::string>{"NYSE", "ARCA", "BATS"}));
    EXPECT_EQ(BasketName(), "Basket");
    EXPECT_EQ(desk->CurrentBasketNum(), -1);
    for (int row = 0; row < 3; ++row) {
        EXPECT_EQ(Stocks().model()->index(row, 0).data(Qt::CheckStateRole).toInt(), Qt::Checked);
    }
    Run(1s);
    EXPECT_FALSE(Cell(Stocks(), 1, stkLast).empty()) << "pasted lines are quoted";
    EXPECT_TRUE(boxes.shown().empty());

    // An unsaved basket: the File menu offers Save.
    emit Find<QMenu>("mnuFile").aboutToShow();
    EXPECT_TRUE(Action("mnuFileSave").isEnabled());
}

TEST_F(MainPaste, EditMenuOffersPasteOnlyForTextThatParses) {
    Open();
    struct Row {
        const char* name;
        const char* text;
        bool offered;
        int rows;
    };
    const Row rows[] = {
        {"two rows and a final break", "IBM\t1\r\nKO\t2\r\n", true, 2},
        {"no tab", "IBM 100\r\nKO 2\r\n", false, 0},
    };
    for (const Row& r : rows) {
        SCOPED_TRACE(r.name);
        Click("cmdClear");
        SetClipboard(QString::fromLatin1(r.text));
        ASSERT_EQ(EditMenuOffersPaste(), r.offered);
        if (r.offered) {
            Action("mnuEditPaste").trigger();
        }
        CtrlV(); // refused text does nothing here either
        EXPECT_EQ(Rows(Stocks()), r.rows);
    }
    EXPECT_TRUE(boxes.shown().empty()) << "a refused paste is refused silently";
}

TEST_F(MainPaste, DroppedTextIsLoadedLikeAPaste) {
    Open();
    Click("cmdLoad_1");
    EXPECT_TRUE(DropText(QStringLiteral("AAPL\t10\tnasdaq\r\nXOM\t20\r\n")));
    EXPECT_EQ(Column(stkSymbol), (std::vector<std::string>{"AAPL", "XOM"}));
    EXPECT_EQ(Column(stkDest), (std::vector<std::string>{"NASDAQ", "NYSE"}));
    EXPECT_EQ(BasketName(), "Basket");

    // Dropped text that does not parse changes nothing.
    DropText(QStringLiteral("just words"));
    EXPECT_EQ(Rows(Stocks()), 2);
    EXPECT_TRUE(boxes.shown().empty());
}

// A megabyte of random bytes through every way in: the window neither crashes nor hangs.
// (What the parser refuses, the line limit and SQL kept as text are the paste logic's tests.)
TEST_F(MainPaste, RandomBytesAreRefusedInBoundedTime) {
    Open();
    Find<QListWidget>("lstBaskets").setCurrentRow(0); // Dow3
    const auto started = std::chrono::steady_clock::now();

    std::mt19937 random(20240315);
    std::string bytes(1 << 20, '\0');
    for (char& c : bytes) {
        c = static_cast<char>(random() & 0xFF);
    }
    SetClipboard(QString::fromLatin1(bytes.data(), static_cast<qsizetype>(bytes.size())));
    CtrlV();
    Action("mnuPaste").trigger();
    DropText(QString::fromLatin1(bytes.data(), static_cast<qsizetype>(bytes.size())));
    // Some random line lacks a tab: the parser refuses it all, silently.
    EXPECT_TRUE(boxes.shown().empty());
    EXPECT_EQ(BasketName(), "Dow3");

    const auto spent = std::chrono::steady_clock::now() - started;
    EXPECT_LT(spent, 60s) << "the window stayed busy too long";
    // Still answering: a small paste replaces the big one.
    SetClipboard(QStringLiteral("IBM\t1\n"));
    CtrlV();
    EXPECT_EQ(Rows(Stocks()), 1);
}

} // namespace
} // namespace wicker::test
