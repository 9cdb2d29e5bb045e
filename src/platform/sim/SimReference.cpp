#include "platform/sim/SimReference.h"

#include "platform/sim/SimKnownSymbols.h"

#include <array>
#include <cctype>

namespace wicker {
namespace {

constexpr std::array<const char*, 12> kSuffixes = {
    "Holdings Inc",    "Corp",        "Group Inc",         "Technologies Inc",
    "Industries Corp", "Systems Inc", "Financial Corp",    "Therapeutics Inc",
    "Energy Partners", "Brands Inc",  "Communications Co", "Materials Corp"};

int CusipValue(char c) {
    if (c >= '0' && c <= '9') {
        return c - '0';
    }
    if (c >= 'A' && c <= 'Z') {
        return c - 'A' + 10;
    }
    switch (c) {
    case '*':
        return 36;
    case '@':
        return 37;
    case '#':
        return 38;
    default:
        return 0;
    }
}

std::string NameStem(const std::string& symbol) {
    std::string stem;
    for (const char c : symbol) {
        if (std::isalpha(static_cast<unsigned char>(c)) != 0) {
            stem += stem.empty() ? static_cast<char>(std::toupper(static_cast<unsigned char>(c)))
                                 : static_cast<char>(std::tolower(static_cast<unsigned char>(c)));
        }
    }
    return stem.empty() ? std::string("Sim") : stem;
}

} // namespace

char CusipCheckDigit(const std::string& first8) {
    int sum = 0;
    for (size_t i = 0; i < first8.size() && i < 8; ++i) {
        int v = CusipValue(first8[i]);
        if (i % 2 == 1) {
            v *= 2;
        }
        sum += v / 10 + v % 10;
    }
    return static_cast<char>('0' + (10 - sum % 10) % 10);
}

SimReference MakeSimReference(const std::string& symbol, SimRandom& random) {
    SimReference r;
    r.companyName = NameStem(symbol) + " " + kSuffixes[random.below(kSuffixes.size())];
    static constexpr char kAlnum[] = "0123456789ABCDEFGHJKLMNPQRSTUVWXYZ";
    std::string first8;
    for (int i = 0; i < 6; ++i) {
        first8 += kAlnum[random.below(sizeof(kAlnum) - 1)];
    }
    first8 += "10"; // the issue number of common stock
    r.cusip = first8 + CusipCheckDigit(first8);
    r.exchange = symbol.size() > 3 ? "NASDAQ" : "NYSE";
    if (const SimKnownSymbol* known = FindSimKnownSymbol(symbol)) {
        r.companyName = known->companyName;
        r.exchange = known->exchange;
    }
    return r;
}

} // namespace wicker
