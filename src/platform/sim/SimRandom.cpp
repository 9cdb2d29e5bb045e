#include "platform/sim/SimRandom.h"

namespace wicker {
namespace {

uint64_t SplitMix(uint64_t& x) {
    uint64_t z = (x += 0x9E3779B97F4A7C15ull);
    z = (z ^ (z >> 30)) * 0xBF58476D1CE4E5B9ull;
    z = (z ^ (z >> 27)) * 0x94D049BB133111EBull;
    return z ^ (z >> 31);
}

uint64_t Rotl(uint64_t x, int k) {
    return (x << k) | (x >> (64 - k));
}

uint64_t Fnv1a(std::string_view text) {
    uint64_t h = 0xCBF29CE484222325ull;
    for (const char c : text) {
        h ^= static_cast<unsigned char>(c);
        h *= 0x100000001B3ull;
    }
    return h;
}

} // namespace

SimRandom::SimRandom(uint64_t seed) {
    uint64_t x = seed;
    for (uint64_t& s : m_s) {
        s = SplitMix(x);
    }
}

SimRandom SimRandom::ForSymbol(uint64_t seed, std::string_view symbol) {
    uint64_t mixed = seed;
    return SimRandom(SplitMix(mixed) ^ Fnv1a(symbol));
}

uint64_t SimRandom::next() {
    const uint64_t result = Rotl(m_s[1] * 5, 7) * 9;
    const uint64_t t = m_s[1] << 17;
    m_s[2] ^= m_s[0];
    m_s[3] ^= m_s[1];
    m_s[1] ^= m_s[2];
    m_s[0] ^= m_s[3];
    m_s[2] ^= t;
    m_s[3] = Rotl(m_s[3], 45);
    return result;
}

double SimRandom::uniform() {
    return static_cast<double>(next() >> 11) * 0x1.0p-53;
}

uint64_t SimRandom::below(uint64_t n) {
    if (n == 0) {
        return 0;
    }
    // The modulo bias is below 2^-40 for the small ranges the simulator draws.
    return next() % n;
}

int64_t SimRandom::between(int64_t low, int64_t high) {
    if (high <= low) {
        return low;
    }
    return low + static_cast<int64_t>(below(static_cast<uint64_t>(high - low) + 1));
}

double SimRandom::normal() {
    // Four uniforms: variance 4/12, so scale by sqrt(3).
    const double sum = uniform() + uniform() + uniform() + uniform() - 2.0;
    return sum * 1.7320508075688772;
}

} // namespace wicker
