#include "trading/orders/AnswerWatch.h"

namespace wicker {

void AnswerWatch::Expect(uint32_t position, Clock::TimePoint handedOff) {
    if (m_state.size() <= position) {
        m_state.resize(position + 1, State::Answered);
    }
    m_state[position] = State::Pending;
    m_waiting.emplace_back(position, handedOff);
}

void AnswerWatch::Answered(uint32_t position) {
    if (position >= m_state.size()) {
        return;
    }
    if (m_state[position] == State::NoAnswer) {
        --m_noAnswer;
    }
    // Its entry in m_waiting goes when Flag reaches it.
    m_state[position] = State::Answered;
}

size_t AnswerWatch::Flag(Clock::TimePoint now, std::chrono::milliseconds limit) {
    size_t flagged = 0;
    // Hand-off times only grow along the queue: stop at the first order still in time.
    while (!m_waiting.empty() && now - m_waiting.front().second >= limit) {
        const uint32_t position = m_waiting.front().first;
        m_waiting.pop_front();
        if (m_state[position] == State::Pending) {
            m_state[position] = State::NoAnswer;
            ++m_noAnswer;
            ++flagged;
        }
    }
    return flagged;
}

AnswerWatch::State AnswerWatch::StateOf(uint32_t position) const {
    return position < m_state.size() ? m_state[position] : State::Answered;
}

void AnswerWatch::Clear() {
    m_state.clear();
    m_waiting.clear();
    m_noAnswer = 0;
}

} // namespace wicker
