#include "exchange/ExchangeOptions.h"

#include <iostream>

int main(int argc, char** argv) {
    const std::vector<std::string> args(argv + 1, argv + argc);
    const wicker::Result<wicker::ExchangeOptions> options = wicker::ParseExchangeOptions(args);
    if (!options) {
        std::cerr << "wicker-exchange: " << options.error().message << "\n";
        return 2;
    }
    if (options->help) {
        std::cout << wicker::ExchangeUsage();
        return 0;
    }
    return 0;
}
