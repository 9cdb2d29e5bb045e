#include "platform/fix/MarketDataPacer.h"

#include <algorithm>

namespace wicker {
namespace {

constexpr int TagMDReqID = 262;
constexpr int TagSubscriptionRequestType = 263;

bool IsUnsubscribe(const FixMessage& m) {
    const std::string* type = m.find(TagSubscriptionRequestType);
    return type != nullptr && *type == "2";
}

} // namespace

void MarketDataPacer::push(FixMessage request) {
    m_waiting.push_back(std::move(request));
}

bool MarketDataPacer::withdraw(const std::string& mdReqID) {
    const auto it = std::find_if(m_waiting.begin(), m_waiting.end(), [&](const FixMessage& m) {
        const std::string* id = m.find(TagMDReqID);
        return id != nullptr && *id == mdReqID && !IsUnsubscribe(m);
    });
    if (it == m_waiting.end()) {
        return false;
    }
    m_waiting.erase(it);
    return true;
}

std::optional<FixMessage> MarketDataPacer::next(TimePoint now) {
    expire(now);
    if (m_waiting.empty()) {
        return std::nullopt;
    }
    // An unsubscribe is never answered: it goes without taking a slot.
    if (!IsUnsubscribe(m_waiting.front()) && m_outstanding.size() >= m_limit) {
        return std::nullopt;
    }
    FixMessage m = std::move(m_waiting.front());
    m_waiting.pop_front();
    if (!IsUnsubscribe(m)) {
        if (const std::string* id = m.find(TagMDReqID)) {
            m_outstanding[*id] = now;
        }
    }
    return m;
}

void MarketDataPacer::sent(const std::string& mdReqID, int msgSeqNum) {
    if (m_outstanding.count(mdReqID) > 0) {
        m_bySeq[msgSeqNum] = mdReqID;
    }
}

void MarketDataPacer::answered(const std::string& mdReqID) {
    m_outstanding.erase(mdReqID);
    std::erase_if(m_bySeq, [&](const auto& e) { return e.second == mdReqID; });
}

std::optional<std::string> MarketDataPacer::bySeqNum(int msgSeqNum) const {
    const auto it = m_bySeq.find(msgSeqNum);
    if (it == m_bySeq.end()) {
        return std::nullopt;
    }
    return it->second;
}

void MarketDataPacer::reset() {
    m_waiting.clear();
    m_outstanding.clear();
    m_bySeq.clear();
}

bool MarketDataPacer::ready(TimePoint now) const {
    if (m_waiting.empty()) {
        return false;
    }
    if (IsUnsubscribe(m_waiting.front()) || m_outstanding.size() < m_limit) {
        return true;
    }
    return std::any_of(m_outstanding.begin(), m_outstanding.end(),
                       [&](const auto& e) { return now - e.second >= m_timeout; });
}

void MarketDataPacer::expire(TimePoint now) {
    for (auto it = m_outstanding.begin(); it != m_outstanding.end();) {
        if (now - it->second >= m_timeout) {
            const std::string id = it->first;
            it = m_outstanding.erase(it);
            std::erase_if(m_bySeq, [&](const auto& e) { return e.second == id; });
        } else {
            ++it;
        }
    }
}

} // namespace wicker
