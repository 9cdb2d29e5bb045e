#pragma once

// A fresh main window per test on a data folder of its own, over the simulated market
// driven by hand: nothing moves unless the test advances it, and the timers' work is called
// directly, so every test is deterministic.

#include "platform/sim/SimPlatform.h"
#include "support/RecordingMessageBoxes.h"
#include "support/TempDir.h"
#include "trading/TradingDesk.h"
#include "trading/ui/PlatformEventPump.h"
#include "trading/ui/frmMain.h"

#include <chrono>
#include <memory>
#include <string>

#include <QAbstractButton>
#include <QAbstractItemView>
#include <QAction>
#include <QComboBox>
#include <QHeaderView>
#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QPushButton>
#include <QTableView>

#include <gtest/gtest.h>

namespace wicker::test {

/// The demo's legacy files: one account, Tech10 on a quick-load button, Dow3 not.
inline void WriteLegacyFiles(const std::filesystem::path& folder) {
    WriteFile(folder / "account.txt", "DEMO01\r\n");
    WriteFile(folder / "Baskets" / "basket.txt",
              "Tech10,Tech 10,tech10.txt,1\r\nDow3,Dow 3,dow3.txt,0\r\n");
    WriteFile(folder / "Baskets" / "tech10.txt",
              "AAPL,100,NASDAQ\r\nMSFT,100,NASDAQ\r\nNVDA,200,NASDAQ\r\nAMZN,100,NASDAQ\r\n"
              "GOOGL,100,NASDAQ\r\nMETA,50,NASDAQ\r\nAVGO,50,NASDAQ\r\nADBE,50,NASDAQ\r\n"
              "CSCO,300,NASDAQ\r\nINTC,400,NASDAQ\r\n");
    WriteFile(folder / "Baskets" / "dow3.txt", "JPM,100,NYSE\r\nKO,200,NYSE\r\nXOM,150,NYSE\r\n");
}

class MainScreen : public ::testing::Test {
protected:
    MainScreen() : clock(FromLocal(LocalDateTime{2024, 3, 15, 10, 0, 0, 0})) {}

    /// Writes basket.ini before the window starts (Windows line ends, as the old files).
    void Ini(const std::string& text) { WriteFile(dir / "basket.ini", text); }

    /// Starts the market, the desk and the window, with the legacy files imported.
    void Open(bool legacy = true) {
        if (legacy && !std::filesystem::exists(dir / "account.txt")) {
            WriteLegacyFiles(dir.path());
        }
        SimSettings s;
        s.seed = 7;
        s.updatesPerSecond = 5;
        s.clipSize = 0;
        s.fillDelayMs = 3'600'000; // market-on-open/-close orders rest through a test
        sim = std::make_unique<SimPlatform>(s, clock, SimDriver::Manual);
        desk = std::make_unique<TradingDesk>(*sim, boxes, clock, dir.path());
        window = std::make_unique<frmMain>(*desk, *sim, boxes);
        const Result<void> loaded = window->FormLoad();
        ASSERT_TRUE(loaded.ok()) << loaded.error().message;
        window->stopTimers();
        ASSERT_TRUE(sim->Start().ok());
        Pump();
        boxes.clear();
    }

    void TearDown() override {
        if (window) {
            window->FormUnload();
        }
        window.reset();
        desk.reset();
        sim.reset();
    }

    /// Delivers every queued platform event the way the program does, batch by batch.
    void Pump() {
        while (window->eventPump().drainBatch() > 0) {
        }
    }

    /// Moves the market on, 200 ms at a time, with the screen's ticks in between.
    void Run(std::chrono::milliseconds span) {
        using namespace std::chrono_literals;
        for (auto t = 0ms; t < span; t += 200ms) {
            sim->advance(200ms);
            clock.advance(200ms);
            Pump();
            window->Timer200ms();
        }
        window->Timer1sec();
        window->Timer2sec();
    }

    template <class W> W& Find(const char* name) const {
        auto* w = window->findChild<W*>(QString::fromLatin1(name));
        if (w == nullptr) {
            throw std::runtime_error(std::string("no child ") + name);
        }
        return *w;
    }
    QTableView& Stocks() const { return Find<QTableView>("lvStocks"); }
    QTableView& Baskets() const { return Find<QTableView>("lvBaskets"); }
    void Click(const char* name) const { Find<QAbstractButton>(name).click(); }
    QAction& Action(const char* name) const { return Find<QAction>(name); }

    static std::string Cell(const QAbstractItemView& view, int row, int column) {
        return view.model()->index(row, column).data().toString().toStdString();
    }
    static int Rows(const QAbstractItemView& view) { return view.model()->rowCount(); }

    /// Chooses the demo account as a trader would: typed and confirmed with Enter.
    void ChooseAccount(const char* account = "DEMO01") {
        auto& box = Find<QComboBox>("cboAccount");
        box.setEditText(QString::fromLatin1(account));
        emit box.lineEdit()->returnPressed();
    }

    /// Opens the window on `ini` (MOC offered besides) and sends Tech10 as BUY MOC: ten
    /// orders that rest until the close, long after a test.
    void SendRestingTech10(const std::string& ini = "") {
        Ini(ini + "[OptionalButtons]\r\nMOC=1\r\n");
        Open();
        ChooseAccount();
        Click("cmdLoad_1");
        using namespace std::chrono_literals;
        Run(1s);
        Click("cmdExecuteBasket_12");
        Run(2s);
    }

    TempDir dir;
    ManualClock clock;
    RecordingMessageBoxes boxes;
    std::unique_ptr<SimPlatform> sim;
    std::unique_ptr<TradingDesk> desk;
    std::unique_ptr<frmMain> window;
};

} // namespace wicker::test
