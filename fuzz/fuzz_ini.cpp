// libFuzzer harness for the INI parser and writer: any bytes must parse or be refused
// without a crash; writing a parsed file and parsing it again must give the same text;
// a write of one key must change that key only and read back. Build: see fuzz/README.md
// (sources: src/common/*.cpp and src/storage/IniDocument.cpp).
#include "storage/IniDocument.h"

#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <map>
#include <string>
#include <string_view>
#include <utility>

namespace {

using wicker::IniDocument;
using Snapshot = std::map<std::pair<std::string, std::string>, std::string>;

void Check(bool ok) {
    if (!ok) {
        std::abort();
    }
}

// Every readable value, by section and key as the names list them.
Snapshot Values(const IniDocument& doc) {
    Snapshot out;
    for (const auto& section : doc.SectionNames()) {
        Check(doc.HasSection(section));
        for (const auto& key : doc.KeyNames(section)) {
            const auto value = doc.Get(section, key);
            Check(value.has_value());
            out[{section, key}] = *value;
        }
    }
    return out;
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    const std::string_view bytes(reinterpret_cast<const char*>(data), size);
    auto parsed = IniDocument::Parse(bytes);
    if (!parsed) {
        return 0;
    }
    IniDocument doc = std::move(parsed).value();
    const std::string text = doc.Serialize();
    auto again = IniDocument::Parse(text);
    Check(again.ok());
    Check(again.value().Serialize() == text);
    const Snapshot before = Values(doc);
    Check(Values(again.value()) == before);

    // Take a section, a key and a value from the input's last bytes and write them.
    const size_t cut = size / 2;
    const std::string_view tail = bytes.substr(cut);
    const size_t a = tail.size() / 3;
    const std::string section(tail.substr(0, a));
    const std::string key(tail.substr(a, a));
    const std::string value(tail.substr(2 * a));
    const bool writable = IniDocument::IsWritableSection(section) &&
                          IniDocument::IsWritableKey(key) && IniDocument::IsWritableValue(value);
    // A refused write changes nothing; the checks on the converted text may refuse more.
    if (!doc.Set(section, key, value)) {
        Check(doc.Serialize() == text);
        return 0;
    }
    Check(writable);
    const auto written = doc.Get(section, key);
    Check(written.has_value());
    // No key may vanish, and a changed value must be the written key under another
    // spelling: a second write through the written names must show there as well.
    const Snapshot after = Values(doc);
    Check(doc.Set(section, key, "\x01marker"));
    for (const auto& [name, old] : before) {
        const auto now = after.find(name);
        Check(now != after.end());
        if (now->second != old) {
            Check(doc.Get(name.first, name.second) == doc.Get(section, key));
        }
    }
    Check(doc.RemoveSection(section));
    Check(!doc.HasSection(section));
    Check(!doc.Get(section, key).has_value());
    return 0;
}
