#include "platform/PlatformSettings.h"

#include "common/Text.h"

#include <charconv>
#include <cstdint>
#include <optional>

namespace wicker {
namespace {

// The trimmed value of a key, nothing when absent or empty.
std::optional<std::string> Present(const PlatformKeyReader& key, std::string_view name) {
    const std::optional<std::string> text = key(name);
    if (!text) {
        return std::nullopt;
    }
    std::string t = Trim(*text);
    if (t.empty()) {
        return std::nullopt;
    }
    return t;
}

std::string Complaint(std::string_view name, const std::string& value, std::string_view rule,
                      const std::string& fallback) {
    return "Setting \"" + std::string(name) + "\" in section \"Platform\" of basket.ini " +
           std::string(rule) + ", not \"" + value + "\"; using " + fallback + ".";
}

// Shortest text that reads back as the same value: 4, 0.5, 1000.
template <class T> std::string Text(T value) {
    char text[64];
    const auto result = std::to_chars(text, text + sizeof text, value);
    return std::string(text, result.ptr);
}

template <class T> std::optional<T> Parse(const std::string& text) {
    T value{};
    const char* end = text.data() + text.size();
    const auto [ptr, ec] = std::from_chars(text.data(), end, value);
    if (ec != std::errc() || ptr != end) {
        return std::nullopt;
    }
    return value;
}

template <class T>
void ReadNumber(const PlatformKeyReader& key, std::string_view name, T low, T high,
                std::string_view rule, T& into, std::vector<std::string>& messages) {
    const std::optional<std::string> text = Present(key, name);
    if (!text) {
        return;
    }
    const std::optional<T> value = Parse<T>(*text);
    if (!value || !(*value >= low && *value <= high)) {
        messages.push_back(Complaint(name, *text, rule, Text(into)));
        return;
    }
    into = *value;
}

void ReadMode(const PlatformKeyReader& key, PlatformSettings& s) {
    const std::optional<std::string> text = Present(key, "Mode");
    if (!text) {
        return;
    }
    const std::string mode = UCase(*text);
    if (mode == "SIM") {
        s.mode = PlatformMode::Sim;
    } else if (mode == "FIX") {
        s.mode = PlatformMode::Fix;
    } else {
        // Never trade for real by mistake: an unknown mode runs the simulator.
        s.messages.push_back(Complaint("Mode", *text, "must be SIM or FIX", "SIM"));
    }
}

void ReadLimits(const PlatformKeyReader& key, PlatformSettings& s) {
    Result<PreTradeLimits> limits = ReadPreTradeLimits(key);
    if (limits) {
        s.sim.limits = std::move(limits).value();
        return;
    }
    s.messages.push_back(limits.error().message + " The simulator runs without an exposure limit.");
    // The destinations stand on their own; only the bad amount is dropped.
    const PlatformKeyReader withoutAmount =
        [&key](std::string_view name) -> std::optional<std::string> {
        if (name == "MaxOrderNotional") {
            return std::nullopt;
        }
        return key(name);
    };
    if (Result<PreTradeLimits> rest = ReadPreTradeLimits(withoutAmount)) {
        s.sim.limits = std::move(rest).value();
    }
}

} // namespace

PlatformSettings ReadPlatformSettings(const PlatformKeyReader& key) {
    PlatformSettings s;
    ReadMode(key, s);
    SimSettings& sim = s.sim;
    ReadNumber<uint64_t>(key, "SimSeed", 0, UINT64_MAX, "must be a whole number of 0 or more",
                         sim.seed, s.messages);
    ReadNumber<double>(key, "SimUpdatesPerSecond", 0.01, 1000,
                       "must be a number of quote updates per symbol from 0.01 to 1000",
                       sim.updatesPerSecond, s.messages);
    ReadNumber<int32_t>(key, "SimFillDelayMs", 0, 3'600'000,
                        "must be milliseconds from 0 to 3600000", sim.fillDelayMs, s.messages);
    ReadNumber<int32_t>(key, "SimClipSize", 0, 1'000'000'000,
                        "must be a number of shares from 0 (no clips) to 1000000000", sim.clipSize,
                        s.messages);
    if (const std::optional<std::string> list = Present(key, "SimHalted")) {
        for (const std::string& item : Split(*list, ",")) {
            if (std::string symbol = UCase(Trim(item)); !symbol.empty()) {
                sim.halted.insert(std::move(symbol));
            }
        }
    }
    ReadLimits(key, s);
    return s;
}

PlatformSettings ReadPlatformSettings(const std::filesystem::path& iniFile) {
    return ReadPlatformSettings(ReadPlatformKeys(iniFile));
}

} // namespace wicker
