#pragma once

// The one result line every benchmark program prints for scripts/bench:
//
//   BENCH-RESULT {"figure":"...","goal":"< 6","unit":"ms","min":..,"median":..,"runs":N,
//                 "pass":true}
//
// Use: time the same work N (>= 3) times in one program run, then
//
//   wicker::bench::Report("UI-thread work per 200 ms ...", "ms", samples, {"<", 6});
//
// For a ratio, pass one ratio per run (each from measurements made side by side in that run)
// with unit "x". The goal is judged on the median; the line also goes to stdout as is, so a
// program may print its own text around it. scripts/bench collects every such line into one
// table and into build/bench-results.json.

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <string>
#include <vector>

namespace wicker::bench {

/// What a figure must meet: `op` is one of "<", "<=", ">", ">=".
struct Goal {
    std::string op;
    double value = 0;

    bool MetBy(double measured) const {
        if (op == "<") {
            return measured < value;
        }
        if (op == "<=") {
            return measured <= value;
        }
        if (op == ">") {
            return measured > value;
        }
        if (op == ">=") {
            return measured >= value;
        }
        return false; // an unknown comparison never passes unseen
    }
};

inline double Median(std::vector<double> samples) {
    if (samples.empty()) {
        return std::nan("");
    }
    std::sort(samples.begin(), samples.end());
    const size_t mid = samples.size() / 2;
    return samples.size() % 2 != 0 ? samples[mid] : (samples[mid - 1] + samples[mid]) / 2;
}

inline double Min(const std::vector<double>& samples) {
    return samples.empty() ? std::nan("") : *std::min_element(samples.begin(), samples.end());
}

/// Figure names hold no quotes or backslashes; anything else is passed through.
inline std::string JsonText(const std::string& text) {
    std::string out;
    for (char c : text) {
        if (c == '"' || c == '\\') {
            out += '\\';
        }
        out += c;
    }
    return out;
}

/// A JSON number, or null for no measurement.
inline std::string JsonNumber(double value) {
    if (!std::isfinite(value)) {
        return "null";
    }
    char text[32];
    std::snprintf(text, sizeof text, "%.4g", value);
    return text;
}

/// Prints the result line of one figure; returns whether its median meets the goal. Fewer
/// than three samples never pass: one run says nothing about the spread.
inline bool Report(const std::string& figure, const std::string& unit,
                   const std::vector<double>& samples, const Goal& goal) {
    const double median = Median(samples);
    const bool pass = samples.size() >= 3 && std::isfinite(median) && goal.MetBy(median);
    char value[32];
    std::snprintf(value, sizeof value, "%g", goal.value);
    std::printf("BENCH-RESULT {\"figure\":\"%s\",\"goal\":\"%s %s\",\"unit\":\"%s\","
                "\"min\":%s,\"median\":%s,\"runs\":%zu,\"pass\":%s}\n",
                JsonText(figure).c_str(), goal.op.c_str(), value, JsonText(unit).c_str(),
                JsonNumber(Min(samples)).c_str(), JsonNumber(median).c_str(), samples.size(),
                pass ? "true" : "false");
    std::fflush(stdout);
    return pass;
}

} // namespace wicker::bench
