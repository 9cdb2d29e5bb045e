#include "platform/fix/SendWindow.h"

#include <utility>

namespace wicker {

void SendWindow::push(FixMessage request) {
    m_waiting.push_back(std::move(request));
}

std::optional<FixMessage> SendWindow::next() {
    if (m_waiting.empty() || m_outstanding.size() >= m_limit) {
        return std::nullopt;
    }
    FixMessage m = std::move(m_waiting.front());
    m_waiting.pop_front();
    // Orders and cancels are known by their ClOrdID, market data requests by MDReqID.
    if (const std::string* id = m.find(11)) {
        m_outstanding.insert(*id);
    } else if (const std::string* req = m.find(262)) {
        m_outstanding.insert(*req);
    }
    return m;
}

void SendWindow::answered(const std::string& clOrdID) {
    m_answers += m_outstanding.erase(clOrdID);
}

std::vector<FixMessage> SendWindow::reset() {
    m_outstanding.clear();
    std::vector<FixMessage> out(std::make_move_iterator(m_waiting.begin()),
                                std::make_move_iterator(m_waiting.end()));
    m_waiting.clear();
    return out;
}

} // namespace wicker
