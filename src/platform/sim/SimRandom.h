#pragma once

#include <cstdint>
#include <string_view>

namespace wicker {

/// A small, fast, reproducible random stream (xoshiro256**). The simulator gives every
/// symbol its own stream, so a symbol's prices do not depend on which other symbols exist.
class SimRandom {
public:
    explicit SimRandom(uint64_t seed);
    /// The stream of `symbol` under the global `seed`.
    static SimRandom ForSymbol(uint64_t seed, std::string_view symbol);

    uint64_t next();
    /// In [0, 1).
    double uniform();
    /// In [0, n); 0 when n is 0.
    uint64_t below(uint64_t n);
    /// In [low, high].
    int64_t between(int64_t low, int64_t high);
    /// Roughly normal with mean 0 and deviation 1 (sum of uniforms; bounded tails).
    double normal();

private:
    uint64_t m_s[4];
};

} // namespace wicker
