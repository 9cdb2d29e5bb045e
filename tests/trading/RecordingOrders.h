#pragma once

#include "common/Conversions.h"
#include "platform/QVXOrder.h"
#include "trading/orders/SendSequence.h"

#include <deque>
#include <functional>
#include <map>
#include <optional>
#include <string>
#include <utility>
#include <vector>

namespace wicker::test {

/// What one order object was told, in order.
struct RecordedOrder {
    std::vector<std::pair<std::string, std::string>> sets; ///< property, value as text
    std::map<std::string, std::string> values;
    bool submitted = false;
    bool released = false;

    std::string value(const std::string& property) const {
        const auto it = values.find(property);
        return it == values.end() ? std::string() : it->second;
    }
    bool has(const std::string& property) const { return values.count(property) != 0; }
    /// Property names in the order they were set.
    std::vector<std::string> setOrder() const {
        std::vector<std::string> names;
        for (const auto& s : sets) {
            names.push_back(s.first);
        }
        return names;
    }
};

/// An order object that writes everything it is told into a RecordedOrder.
class RecordingOrder : public QVXOrder {
public:
    RecordingOrder(RecordedOrder& record, std::function<int32_t(const RecordedOrder&)>& result)
        : m_record(record), m_result(result) {}
    ~RecordingOrder() override { m_record.released = true; }

#define WICKER_TEXT_PROPERTY(Name)                                                                 \
    std::string Name() const override {                                                            \
        return m_record.value(#Name);                                                              \
    }                                                                                              \
    void set##Name(std::string v) override {                                                       \
        record(#Name, v);                                                                          \
    }
#define WICKER_NUMBER_PROPERTY(Name, Type)                                                         \
    Type Name() const override {                                                                   \
        return m_record.has(#Name) ? static_cast<Type>(CDbl(m_record.value(#Name))) : Type{};      \
    }                                                                                              \
    void set##Name(Type v) override {                                                              \
        record(#Name, NumberText(static_cast<double>(v)));                                         \
    }

    WICKER_TEXT_PROPERTY(Account)
    WICKER_TEXT_PROPERTY(Side)
    WICKER_TEXT_PROPERTY(Symbol)
    WICKER_NUMBER_PROPERTY(Quantity, int32_t)
    WICKER_NUMBER_PROPERTY(LmtPrice, double)
    WICKER_NUMBER_PROPERTY(PriceType, int32_t)
    WICKER_TEXT_PROPERTY(ClOrderID)
    WICKER_TEXT_PROPERTY(Tif)
    WICKER_TEXT_PROPERTY(Destination)
    WICKER_NUMBER_PROPERTY(MaxFloor, int32_t)
    WICKER_TEXT_PROPERTY(Memo)
#undef WICKER_TEXT_PROPERTY
#undef WICKER_NUMBER_PROPERTY

    int32_t SubmitOrder() override {
        m_record.submitted = true;
        return m_result ? m_result(m_record) : 0;
    }

private:
    void record(const std::string& name, const std::string& value) {
        m_record.sets.emplace_back(name, value);
        m_record.values[name] = value;
    }
    RecordedOrder& m_record;
    std::function<int32_t(const RecordedOrder&)>& m_result;
};

/// A platform order factory whose orders record every property set; SubmitOrder answers
/// from `submitResult` (0 when unset).
class RecordingOrders : public QVXOrderFactory {
public:
    std::unique_ptr<QVXOrder> CreateOrder() override {
        created.emplace_back();
        return std::make_unique<RecordingOrder>(created.back(), submitResult);
    }

    std::deque<RecordedOrder> created;
    std::function<int32_t(const RecordedOrder&)> submitResult;

    std::vector<const RecordedOrder*> submitted() const {
        std::vector<const RecordedOrder*> out;
        for (const auto& o : created) {
            if (o.submitted) {
                out.push_back(&o);
            }
        }
        return out;
    }
};

/// SequenceStore in memory that can be told to fail.
class MemorySequenceStore : public SequenceStore {
public:
    Result<void> SaveBasketNum(int16_t next) override {
        ++writes;
        if (failWrites) {
            return Error{"disk full"};
        }
        saved = next;
        return {};
    }
    std::optional<int16_t> saved;
    int writes = 0;
    bool failWrites = false;
};

} // namespace wicker::test
