// Works on a data folder the way a second program would, for tests that need a separate
// process: one that holds the folder, one that is killed half-way, two that race.
//   hold DIR                   lock the folder, say "locked", wait to be killed
//   try DIR                    lock the folder; exit 0, or print the refusal and exit 3
//   ini DIR TAG COUNT          COUNT times: lock, write Hammer/TAG<i> to basket.ini, unlock
//   firststart DIR [PAUSE]     open (create) baskets.mdb; with PAUSE, stop after PAUSE baskets
//   import DIR FILE [PAUSE]    import FILE as basket "Imp"; with PAUSE, stop after PAUSE lines
//   send DIR LINES BUTTON [PAUSE]
//                              the trading desk on the platform of basket.ini (the simulator
//                              keeping its book in DIR, or FIX): sends a LINES-line basket with
//                              button BUTTON and prints "sent SEQ SUBMITTED"; with PAUSE, stops
//                              after PAUSE orders left
//   show DIR [CANCEL]          the desk started again: prints the restore, then every order as
//                              "order ID CUM LEAVES STATUS"; with CANCEL, first cancels send
//                              CANCEL of basket "Tool" and prints "cancelled COUNT"
#include "baskets/BasketImport.h"
#include "common/Clock.h"
#include "platform/PlatformSettings.h"
#include "platform/sim/SimPlatform.h"
#include "storage/BasketDatabase.h"
#include "storage/FolderLock.h"
#include "storage/clsIniFile.h"
#include "trading/TradingDesk.h"

#ifdef WICKER_TOOL_FIX
#include "platform/fix/FixPlatform.h"
#endif

#include <chrono>
#include <cstdio>
#include <iostream>
#include <string>
#include <thread>

namespace {

using namespace wicker;

class SilentBoxes final : public MessageBoxes {
public:
    using MessageBoxes::show;
    MsgAnswer show(const MessageRequest& r) override {
        std::cout << "box: " << r.text << std::endl;
        return MsgAnswer::Ok;
    }
};

[[noreturn]] void Park() {
    std::cout << "paused" << std::endl;
    for (;;) {
        std::this_thread::sleep_for(std::chrono::hours(1));
    }
}

// Stops the work at a point the test can see, so its kill lands inside the work.
class PauseAt final : public Progress {
public:
    explicit PauseAt(size_t at) : m_at(at) {}
    void advance(const std::string&, size_t done, size_t) override {
        if (m_at > 0 && done == m_at) {
            Park();
        }
    }

private:
    size_t m_at;
};

int Hold(const std::filesystem::path& dir) {
    Result<FolderLock> lock = FolderLock::Acquire(dir);
    if (!lock) {
        std::cout << lock.error().message << std::endl;
        return 3;
    }
    std::cout << "locked" << std::endl;
    Park();
}

int Try(const std::filesystem::path& dir) {
    Result<FolderLock> lock = FolderLock::Acquire(dir);
    if (!lock) {
        std::cout << lock.error().message << std::endl;
        return 3;
    }
    return 0;
}

int Ini(const std::filesystem::path& dir, const std::string& tag, int count) {
    clsIniFile ini;
    ini.setPath(dir / "basket.ini");
    ini.setSection("Hammer");
    for (int i = 0; i < count; ++i) {
        Result<FolderLock> lock = FolderLock::Acquire(dir);
        while (!lock) {
            std::this_thread::yield();
            lock = FolderLock::Acquire(dir);
        }
        ini.setKey(tag + std::to_string(i));
        ini.setValue(std::to_string(i));
        if (!ini.Success()) {
            return 1;
        }
    }
    return 0;
}

int FirstStart(const std::filesystem::path& dir, size_t pause) {
    SilentBoxes boxes;
    PauseAt progress(pause);
    return OpenBasketDatabase(dir, boxes, &progress) ? 0 : 1;
}

int Import(const std::filesystem::path& dir, const std::string& file, uint64_t pause) {
    SilentBoxes boxes;
    Result<DatabaseStartup> started = OpenBasketDatabase(dir, boxes);
    if (!started) {
        return 1;
    }
    ImportFocus focus;
    auto import =
        StartBasketImport(*started->db, boxes, {"Imp", "IMP", file, "NYSE", "ARCA"}, focus);
    if (!import) {
        return 1;
    }
    while (import->step(100)) {
        if (pause > 0 && import->linesImported() >= pause) {
            Park();
        }
    }
    ReportBasketImport(boxes, *import);
    return 0;
}

/// Answers every question of the desk with its first button, and prints it.
class DeskBoxes final : public MessageBoxes {
public:
    using MessageBoxes::show;
    MsgAnswer show(const MessageRequest& r) override {
        std::cout << "box: " << r.text << std::endl;
        return r.buttons == MsgButtons::Ok         ? MsgAnswer::Ok
               : r.buttons == MsgButtons::OkCancel ? MsgAnswer::Ok
                                                   : MsgAnswer::Yes;
    }
};

/// The platform basket.ini names, made as the program makes it: the simulator keeping its
/// book in the folder, or FIX.
std::unique_ptr<Platform> MakePlatform(const std::filesystem::path& dir, const Clock& clock) {
    PlatformSettings settings = ReadPlatformSettings(dir / "basket.ini");
#ifdef WICKER_TOOL_FIX
    if (settings.mode == PlatformMode::Fix) {
        Result<std::unique_ptr<Platform>> fix = CreateFixPlatform(dir, clock);
        if (!fix) {
            std::cout << fix.error().message << std::endl;
            return nullptr;
        }
        return std::move(fix).value();
    }
#endif
    auto sim = std::make_unique<SimPlatform>(settings.sim, clock);
    if (Result<void> kept = sim->KeepBook(dir / kSimBookFileName); !kept) {
        std::cout << kept.error().message << std::endl;
        return nullptr;
    }
    return sim;
}

/// The program's desk, started as the program starts it.
struct ProgramDesk {
    explicit ProgramDesk(const std::filesystem::path& dir)
        : lock(FolderLock::Acquire(dir)), platform(lock ? MakePlatform(dir, clock) : nullptr) {
        if (platform) {
            desk = std::make_unique<TradingDesk>(*platform, boxes, clock, dir);
        }
    }

    bool open() {
        if (!lock) {
            std::cout << lock.error().message << std::endl;
        }
        if (!desk || !desk->FormLoad().ok() || !platform->Start().ok()) {
            return false;
        }
        // A broker link logs on first.
        for (int i = 0; i < 500 && !desk->PlatformOnline(); ++i) {
            settle(std::chrono::milliseconds(20));
        }
        return desk->PlatformOnline();
    }
    /// Settles until the platform has been quiet for a second and no order waits for the
    /// broker's first answer (a send, or the restart's status requests), at most `limit`: a
    /// loaded machine can leave a broker silent for a second in the middle of its answers.
    void settleQuiet(std::chrono::milliseconds limit) {
        const auto start = std::chrono::steady_clock::now();
        auto lastEvent = start;
        const auto settled = [&] {
            return std::chrono::steady_clock::now() - lastEvent >= std::chrono::seconds(1) &&
                   !anyAwaitingAnswer();
        };
        while (!settled() && std::chrono::steady_clock::now() - start < limit) {
            std::this_thread::sleep_for(std::chrono::milliseconds(20));
            if (desk->DrainPlatformEvents() > 0) {
                lastEvent = std::chrono::steady_clock::now();
            }
            desk->Timer200ms();
        }
        desk->Timer1sec();
    }
    bool anyAwaitingAnswer() const {
        const OrderTracker& tracker = desk->Tracker();
        for (size_t i = 0; i < tracker.Orders().size(); ++i) {
            if (tracker.Snapshot(i).answer == AnswerWatch::State::Pending) {
                return true;
            }
        }
        return false;
    }
    /// The screen's timers and drains for `span` of wall time.
    void settle(std::chrono::milliseconds span) {
        const auto end = std::chrono::steady_clock::now() + span;
        while (std::chrono::steady_clock::now() < end) {
            std::this_thread::sleep_for(std::chrono::milliseconds(20));
            desk->DrainPlatformEvents();
            desk->Timer200ms();
        }
        desk->Timer1sec();
    }
    void close() {
        platform->Stop();
        desk->DrainPlatformEvents();
        desk->Timer1sec();
        desk->FormUnload();
    }

    Result<FolderLock> lock;
    SystemClock clock;
    DeskBoxes boxes;
    std::unique_ptr<Platform> platform;
    std::unique_ptr<TradingDesk> desk;
};

/// Passes the send on to the desk's own records, and stops the program after `pause`
/// orders left.
class PauseSend final : public SendListener {
public:
    PauseSend(SendListener& records, size_t pause) : m_records(records), m_pause(pause) {}
    void SendBegins(int16_t seq, std::string_view name, std::span<const QVXOrder* const> orders,
                    std::string_view overrides) override {
        m_records.SendBegins(seq, name, orders, overrides);
    }
    void SendContinues(int16_t seq, std::span<const QVXOrder* const> orders) override {
        m_records.SendContinues(seq, orders);
    }
    void Submitted(int32_t result) override {
        m_records.Submitted(result);
        if (++m_submitted == m_pause) {
            Park();
        }
    }
    void Handed(std::span<const std::unique_ptr<QVXOrder>> orders) override {
        m_records.Handed(orders);
    }
    void SendEnds(int16_t seq) override { m_records.SendEnds(seq); }

private:
    SendListener& m_records;
    size_t m_pause;
    size_t m_submitted = 0;
};

int Send(const std::filesystem::path& dir, int lines, int button, size_t pause) {
    ProgramDesk d(dir);
    if (!d.open()) {
        return 1;
    }
    Database& db = d.desk->db();
    db.ExecuteSql("DELETE FROM tblBaskets WHERE strBasketName = 'Tool'");
    db.ExecuteSql("INSERT INTO tblBaskets(strBasketName,strButtonName,intOnButton,chType) "
                  "VALUES('Tool','Tool',0,'B')");
    const int32_t num = db.OpenRecordset("SELECT intBasketNum FROM tblBaskets WHERE "
                                         "strBasketName = 'Tool'")
                            .Field("intBasketNum")
                            .toInt();
    std::vector<BasketLine> basket;
    for (int i = 0; i < lines; ++i) {
        basket.push_back({"S" + std::to_string(i), std::to_string(100 + i % 900), "NYSE"});
    }
    {
        Database::Transaction setUp(db); // one disk sync for the set-up, not one per line
        SaveBasketDetails(db, num, "Tool", basket);
        setUp.commit();
    }
    d.desk->LoadBasketList();
    if (!d.desk->LoadBasketByName("Tool")) {
        return 1;
    }
    d.settle(std::chrono::milliseconds(300)); // quotes reach the lines
    PauseSend paused(d.desk->Records(), pause);
    d.desk->Execution().setListener(&paused);
    const ExecuteReport sent = d.desk->ExecuteBasket(button, "ACCT01");
    d.desk->Execution().setListener(&d.desk->Records());
    std::cout << "sent " << sent.basketSeq << ' ' << sent.ordersSubmitted << std::endl;
    d.settleQuiet(std::chrono::seconds(20)); // the broker's answers
    d.close();
    return 0;
}

int Show(const std::filesystem::path& dir, int cancelSeq) {
    ProgramDesk d(dir);
    if (!d.open()) {
        return 1;
    }
    d.settleQuiet(std::chrono::seconds(20));
    if (cancelSeq > 0) {
        d.desk->LoadBasketList();
        d.desk->LoadBasketByName("Tool");
        d.desk->settings().beforeCancel = false;
        std::cout << "cancelled "
                  << d.desk->CancelSelectedBasket(
                         BasketListSelection{std::to_string(cancelSeq), "Tool"})
                  << std::endl;
        d.settleQuiet(std::chrono::seconds(20));
    }
    d.close();
    const RestoreReport& r = d.desk->Restored();
    std::cout << "restored " << r.restored << " adopted " << r.adopted << " notsent " << r.notSent
              << " unknown " << r.unknown << std::endl;
    const OrderTracker& tracker = d.desk->Tracker();
    for (size_t i = 0; i < tracker.Orders().size(); ++i) {
        const OrderUpdate& o = tracker.Orders()[i];
        std::cout << "order " << o.m_strClOrderId << ' ' << o.m_nCumExecQuantity << ' '
                  << o.m_nLvsQuantity << ' ' << tracker.StatusText(i) << std::endl;
    }
    std::cout << "end" << std::endl;
    return 0;
}

} // namespace

int main(int argc, char** argv) {
    const std::string mode = argc > 2 ? argv[1] : "";
    const std::filesystem::path dir = argc > 2 ? argv[2] : "";
    auto number = [&](int i) { return argc > i ? std::stoull(argv[i]) : 0; };
    if (mode == "hold") {
        return Hold(dir);
    }
    if (mode == "try") {
        return Try(dir);
    }
    if (mode == "ini" && argc > 4) {
        return Ini(dir, argv[3], static_cast<int>(number(4)));
    }
    if (mode == "firststart") {
        return FirstStart(dir, number(3));
    }
    if (mode == "import" && argc > 3) {
        return Import(dir, argv[3], number(4));
    }
    if (mode == "send" && argc > 4) {
        return Send(dir, static_cast<int>(number(3)), static_cast<int>(number(4)), number(5));
    }
    if (mode == "show") {
        return Show(dir, static_cast<int>(number(3)));
    }
    std::cerr << "usage: wicker_folder_tool hold|try|ini|firststart|import|send|show DIR ...\n";
    return 2;
}
