#pragma once

// FIX messages for tests, written as "35=8|11=A-1|39=0": the MsgType and body fields,
// separated by '|'.

#include "platform/fix/engine/FixWire.h"

#include <string>
#include <string_view>

namespace wicker::test {

inline FixMessage Fix(std::string_view text) {
    FixMessage m;
    size_t start = 0;
    while (start <= text.size()) {
        size_t end = text.find('|', start);
        if (end == std::string_view::npos) {
            end = text.size();
        }
        const std::string_view pair = text.substr(start, end - start);
        const size_t eq = pair.find('=');
        if (eq != std::string_view::npos) {
            const int tag = std::stoi(std::string(pair.substr(0, eq)));
            std::string value(pair.substr(eq + 1));
            if (tag == 35) {
                m.msgType = value;
            } else if (tag == 34) {
                m.msgSeqNum = std::stoi(value);
            } else {
                m.add(tag, value);
            }
        }
        start = end + 1;
    }
    return m;
}

} // namespace wicker::test
