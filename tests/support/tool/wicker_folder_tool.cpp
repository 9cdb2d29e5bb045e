// Works on a data folder the way a second program would, for tests that need a separate
// process: one that holds the folder, one that is killed half-way, two that race.
//   hold DIR                   lock the folder, say "locked", wait to be killed
//   try DIR                    lock the folder; exit 0, or print the refusal and exit 3
//   ini DIR TAG COUNT          COUNT times: lock, write Hammer/TAG<i> to basket.ini, unlock
//   firststart DIR [PAUSE]     open (create) baskets.mdb; with PAUSE, stop after PAUSE baskets
//   import DIR FILE [PAUSE]    import FILE as basket "Imp"; with PAUSE, stop after PAUSE lines
#include "baskets/BasketImport.h"
#include "storage/BasketDatabase.h"
#include "storage/FolderLock.h"
#include "storage/clsIniFile.h"

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
    std::cerr << "usage: wicker_folder_tool hold|try|ini|firststart|import DIR ...\n";
    return 2;
}
