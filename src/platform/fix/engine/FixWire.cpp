#include "platform/fix/engine/FixWire.h"

#include <utility>

namespace wicker {

const std::string* FixMessage::find(int tag) const {
    for (const FixField& f : fields) {
        if (f.tag == tag) {
            return &f.value;
        }
    }
    return nullptr;
}

void FixFieldReader::findAll(const int* tags, std::size_t count, const std::string** values) const {
    for (std::size_t i = 0; i < count; ++i) {
        values[i] = find(tags[i]);
    }
}

const FixGroup* FixMessage::findGroup(int countTag) const {
    for (const FixGroup& g : groups) {
        if (g.countTag == countTag) {
            return &g;
        }
    }
    return nullptr;
}

void FixMessage::add(int tag, std::string value) {
    FixField f;
    f.tag = tag;
    f.value = std::move(value);
    fields.push_back(std::move(f));
}

} // namespace wicker
