#include "platform/sim/SimMarket.h"

#include "common/Text.h"

#include <algorithm>
#include <functional>

namespace wicker {

SimMarket::SimMarket(uint64_t seed, double updatesPerSecond)
    : m_seed(seed), m_meanIntervalUs(1.0e6 / std::max(updatesPerSecond, 1.0e-3)) {}

size_t SimMarket::instrumentOf(std::string_view symbol) {
    std::string key = UCase(Trim(symbol));
    if (const auto it = m_index.find(key); it != m_index.end()) {
        return it->second;
    }
    m_entries.push_back(std::make_unique<Entry>(key, m_seed));
    m_index.emplace(std::move(key), m_entries.size() - 1);
    return m_entries.size() - 1;
}

std::optional<size_t> SimMarket::find(std::string_view symbol) const {
    if (const auto it = m_index.find(UCase(Trim(symbol))); it != m_index.end()) {
        return it->second;
    }
    return std::nullopt;
}

void SimMarket::subscribe(size_t i, const std::string& quoteSymbol, int64_t nowUs) {
    Entry& e = *m_entries[i];
    e.quoteSymbol = quoteSymbol;
    e.subscribed = true;
    Schedule(i, nowUs);
}

void SimMarket::unsubscribe(size_t i) {
    m_entries[i]->subscribed = false;
}

std::vector<size_t> SimMarket::subscribedInstruments() const {
    std::vector<size_t> list;
    for (size_t i = 0; i < m_entries.size(); ++i) {
        if (m_entries[i]->subscribed) {
            list.push_back(i);
        }
    }
    return list;
}

void SimMarket::pin(size_t i, int64_t nowUs) {
    ++m_entries[i]->pins;
    Schedule(i, nowUs);
}

void SimMarket::unpin(size_t i) {
    Entry& e = *m_entries[i];
    e.pins = std::max(0, e.pins - 1);
}

int64_t SimMarket::Interval(size_t i) {
    // Irregular gaps around the mean, from the symbol's own stream.
    const double u = m_entries[i]->instrument.random().uniform();
    return std::max<int64_t>(1, static_cast<int64_t>(m_meanIntervalUs * (0.5 + u)));
}

void SimMarket::Schedule(size_t i, int64_t nowUs) {
    Entry& e = *m_entries[i];
    if (e.scheduled) {
        return;
    }
    e.scheduled = true;
    m_heap.emplace_back(nowUs + Interval(i), static_cast<uint32_t>(i));
    std::push_heap(m_heap.begin(), m_heap.end(), std::greater<>{});
}

SimMarket::Step SimMarket::stepNext() {
    Step step;
    if (m_heap.empty()) {
        return step;
    }
    std::pop_heap(m_heap.begin(), m_heap.end(), std::greater<>{});
    const auto [due, index] = m_heap.back();
    m_heap.pop_back();
    Entry& e = *m_entries[index];
    step.instrument = index;
    if (!Ticks(e)) {
        e.scheduled = false;
        return step;
    }
    step.fields = e.instrument.step();
    step.moved = true;
    m_heap.emplace_back(due + Interval(index), index);
    std::push_heap(m_heap.begin(), m_heap.end(), std::greater<>{});
    return step;
}

void SimMarket::restartSchedule(int64_t nowUs) {
    m_heap.clear();
    for (size_t i = 0; i < m_entries.size(); ++i) {
        Entry& e = *m_entries[i];
        e.scheduled = false;
        if (Ticks(e)) {
            Schedule(i, nowUs);
        }
    }
}

} // namespace wicker
