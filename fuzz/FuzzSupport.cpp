#include "FuzzSupport.h"

#include <unistd.h>

namespace wicker::fuzz {
namespace {

SimSettings QuietMarket() {
    SimSettings s;
    s.seed = 7;
    s.updatesPerSecond = 2;
    s.clipSize = 100;
    s.fillDelayMs = 400;
    s.halted = {"HALTD"};
    return s;
}

} // namespace

std::filesystem::path FreshFolder(const std::string& name) {
    const auto dir = std::filesystem::temp_directory_path() /
                     ("wicker-fuzz-" + name + "-" + std::to_string(::getpid()));
    std::error_code ec;
    std::filesystem::remove_all(dir, ec);
    std::filesystem::create_directories(dir);
    return dir;
}

SimDesk::SimDesk(const std::filesystem::path& folder)
    : clock(FromLocal(LocalDateTime{2026, 11, 23, 10, 0, 0, 0})),
      sim(QuietMarket(), clock, SimDriver::Manual), desk(sim, boxes, clock, folder) {
    loaded = sim.Start().ok() && desk.FormLoad().ok();
}

SimDesk::~SimDesk() = default;

void SimDesk::Run(std::chrono::milliseconds span) {
    using namespace std::chrono_literals;
    for (auto t = 0ms; t < span; t += 200ms) {
        sim.advance(200ms);
        clock.advance(200ms);
        sim.Events().drain(desk, desk);
        desk.Timer200ms();
    }
    desk.Timer1sec();
    desk.Timer2sec();
}

} // namespace wicker::fuzz
