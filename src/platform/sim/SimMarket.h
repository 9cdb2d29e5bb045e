#pragma once

#include "platform/sim/SimInstrument.h"

#include <cstdint>
#include <limits>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <unordered_map>
#include <utility>
#include <vector>

namespace wicker {

/// Every symbol the simulator knows, and when each moves next. A symbol ticks while it is
/// registered for quotes or has working orders; times are microseconds of virtual time.
class SimMarket {
public:
    static constexpr int64_t kNever = std::numeric_limits<int64_t>::max();

    SimMarket(uint64_t seed, double updatesPerSecond);

    /// The instrument of `symbol` (upper case, blanks trimmed), made on first use.
    size_t instrumentOf(std::string_view symbol);
    /// The instrument of `symbol` if the market knows it already.
    std::optional<size_t> find(std::string_view symbol) const;
    SimInstrument& instrument(size_t i) { return m_entries[i]->instrument; }
    /// The symbol text quotes of instrument `i` carry: as it was registered.
    const std::string& quoteSymbol(size_t i) const { return m_entries[i]->quoteSymbol; }

    void subscribe(size_t i, const std::string& quoteSymbol, int64_t nowUs);
    void unsubscribe(size_t i);
    bool subscribed(size_t i) const { return m_entries[i]->subscribed; }
    /// Instruments registered for quotes, in the order they were first made.
    std::vector<size_t> subscribedInstruments() const;

    /// A working order keeps its instrument ticking until it lets go.
    void pin(size_t i, int64_t nowUs);
    void unpin(size_t i);

    /// When the next instrument moves; kNever when none ticks.
    int64_t nextDueUs() const { return m_heap.empty() ? kNever : m_heap.front().first; }

    struct Step {
        size_t instrument = 0;
        uint32_t fields = 0; ///< what changed
        bool moved = false;  ///< false when the instrument had stopped ticking
    };
    /// Moves the instrument that is due first and schedules its next move.
    Step stepNext();

    /// Schedules every ticking instrument afresh from `nowUs` (after a pause).
    void restartSchedule(int64_t nowUs);

private:
    struct Entry {
        SimInstrument instrument;
        std::string quoteSymbol;
        bool subscribed = false;
        bool scheduled = false;
        int32_t pins = 0;
        Entry(const std::string& key, uint64_t seed) : instrument(key, seed), quoteSymbol(key) {}
    };
    using Due = std::pair<int64_t, uint32_t>; // time, instrument

    void Schedule(size_t i, int64_t nowUs);
    int64_t Interval(size_t i);
    bool Ticks(const Entry& e) const { return e.subscribed || e.pins > 0; }

    uint64_t m_seed;
    double m_meanIntervalUs;
    std::vector<std::unique_ptr<Entry>> m_entries;
    std::unordered_map<std::string, size_t> m_index;
    std::vector<Due> m_heap; // min-heap on time, then instrument
};

} // namespace wicker
