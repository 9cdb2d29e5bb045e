#include "platform/fix/engine/FixConvert.h"

#include <algorithm>
#include <memory>
#include <string>

#include <quickfix/DataDictionary.h>
#include <quickfix/FixFields.h>
#include <quickfix/Group.h>

namespace wicker {
namespace {

// Repeating groups: message type, count tag, delimiter, the other tags of an entry.
struct GroupShape {
    const char* msgType;
    int countTag;
    int delimiter;
    std::vector<int> otherTags;
};

const std::vector<GroupShape>& MarketDataGroups() {
    static const std::vector<GroupShape> shapes = {
        {"V", 146, 55, {65, 48, 22, 207}},
        {"V", 267, 269, {}},
        {"W", 268, 269, {270, 271, 272, 273, 275, 276, 290}},
        {"X", 268, 279, {269, 278, 280, 55, 65, 48, 22, 207, 270, 271, 272, 273, 275, 290}},
    };
    return shapes;
}

std::vector<FixField> FieldsOf(const FIX::FieldMap& map) {
    std::vector<FixField> out;
    out.reserve(map.totalFields());
    for (FIX::FieldMap::const_iterator i = map.begin(); i != map.end(); ++i) {
        FixField f;
        f.tag = i->getTag();
        f.value = i->getString();
        out.push_back(f);
    }
    return out;
}

// A sequence number of 1 to 9 digits; 0 (no usable number) for anything else.
int SeqNumOf(const std::string& text) {
    if (text.empty() || text.size() > 9 ||
        text.find_first_not_of("0123456789") != std::string::npos) {
        return 0;
    }
    return std::stoi(text);
}

} // namespace

FIX::Message ToQuickFix(const FixMessage& message, const std::string& beginString) {
    FIX::Message m;
    m.getHeader().setField(FIX::BeginString(beginString));
    m.getHeader().setField(FIX::MsgType(message.msgType));
    for (const FixField& f : message.fields) {
        m.setField(f.tag, f.value);
    }
    for (const FixGroup& g : message.groups) {
        for (const std::vector<FixField>& entry : g.entries) {
            if (entry.empty()) {
                continue;
            }
            FIX::Group group(g.countTag, entry.front().tag);
            for (const FixField& f : entry) {
                group.setField(f.tag, f.value);
            }
            m.addGroup(group);
        }
    }
    return m;
}

bool RefillQuickFix(FIX::Message& out, const FixMessage& message) {
    if (!message.groups.empty() || out.g_begin() != out.g_end() ||
        static_cast<size_t>(std::distance(out.begin(), out.end())) != message.fields.size() ||
        !out.getHeader().isSetField(FIX::FIELD::MsgType) ||
        out.getHeader().getField(FIX::FIELD::MsgType) != message.msgType) {
        return false;
    }
    // As many fields and each of `out`'s tags found: the same tags, each once.
    for (FIX::FieldBase& field : out) {
        const auto value = std::find_if(message.fields.begin(), message.fields.end(),
                                        [&](const FixField& f) { return f.tag == field.getTag(); });
        if (value == message.fields.end() || value->value.empty()) {
            return false;
        }
        if (value->value != field.getString()) {
            field.setString(value->value);
        }
    }
    return true;
}

FixMessage FromQuickFix(const FIX::Message& message) {
    FixMessage out;
    const FIX::Header& header = message.getHeader();
    FIX::MsgType msgType;
    if (header.getFieldIfSet(msgType)) {
        out.msgType = msgType.getValue();
    }
    // Read as text: QuickFIX's own conversion overflows on a number past int's range.
    if (header.isSetField(FIX::FIELD::MsgSeqNum)) {
        out.msgSeqNum = SeqNumOf(header.getField(FIX::FIELD::MsgSeqNum));
    }
    FIX::PossDupFlag possDup;
    if (header.getFieldIfSet(possDup)) {
        out.possDup = possDup.getValue();
    }
    out.fields = FieldsOf(message);
    for (FIX::FieldMap::g_const_iterator g = message.g_begin(); g != message.g_end(); ++g) {
        FixGroup group;
        group.countTag = g->first;
        for (const FIX::FieldMap* entry : g->second) {
            group.entries.push_back(FieldsOf(*entry));
        }
        out.groups.push_back(group);
    }
    return out;
}

QuickFixReader::QuickFixReader(const FIX::Message& message) : m_message(message) {
    FIX::MsgType msgType;
    if (message.getHeader().getFieldIfSet(msgType)) {
        m_msgType = msgType.getValue();
    }
}

const std::string* QuickFixReader::find(int tag) const {
    // One search where QuickFIX's isSetField and getField would make two, the way QuickFIX
    // searches: a short body from the front, a longer one (kept in tag order) by halves.
    const FIX::FieldMap::const_iterator begin = m_message.begin();
    const FIX::FieldMap::const_iterator end = m_message.end();
    FIX::FieldMap::const_iterator it = end;
    if (end - begin < 16) {
        it = std::find_if(begin, end, [tag](const FIX::FieldBase& f) { return f.getTag() == tag; });
    } else {
        it = std::lower_bound(begin, end, tag,
                              [](const FIX::FieldBase& f, int t) { return f.getTag() < t; });
        if (it != end && it->getTag() != tag) {
            it = end;
        }
    }
    return it == end ? nullptr : &it->getString();
}

void QuickFixReader::findAll(const int* tags, std::size_t count, const std::string** values) const {
    // QuickFIX keeps the body in tag order: one walk through it meets the tags in turn.
    std::size_t next = 0;
    int previous = 0;
    for (FIX::FieldMap::const_iterator it = m_message.begin(); it != m_message.end(); ++it) {
        const int tag = it->getTag();
        if (tag < previous) {
            FixFieldReader::findAll(tags, count, values); // not in order after all
            return;
        }
        previous = tag;
        while (next < count && tags[next] < tag) {
            values[next++] = nullptr;
        }
        if (next < count && tags[next] == tag) {
            values[next++] = &it->getString();
        }
    }
    while (next < count) {
        values[next++] = nullptr;
    }
}

FIX::DataDictionaryProvider MarketDataDictionaries(const std::string& beginString) {
    std::shared_ptr<FIX::DataDictionary> dd = std::make_shared<FIX::DataDictionary>();
    for (const GroupShape& shape : MarketDataGroups()) {
        FIX::DataDictionary group;
        group.addField(shape.delimiter);
        for (int tag : shape.otherTags) {
            group.addField(tag);
        }
        dd->addGroup(shape.msgType, shape.countTag, shape.delimiter, group);
    }
    FIX::DataDictionaryProvider provider;
    provider.addTransportDataDictionary(FIX::BeginString(beginString), dd);
    provider.addApplicationDataDictionary(FIX::Message::toApplVerID(FIX::BeginString(beginString)),
                                          dd);
    return provider;
}

} // namespace wicker
