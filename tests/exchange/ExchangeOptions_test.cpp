#include "exchange/ExchangeOptions.h"

#include <gtest/gtest.h>

namespace wicker {
namespace {

TEST(ExchangeOptions, DefaultsListenOnLoopbackOnly) {
    const Result<ExchangeOptions> o = ParseExchangeOptions({});
    ASSERT_TRUE(o.ok());
    EXPECT_EQ(o->bindAddress, "127.0.0.1");
    EXPECT_EQ(o->port, 9878);
    EXPECT_EQ(o->senderCompID, "EXCH");
    EXPECT_EQ(o->targetCompID, "WICKER");
    EXPECT_TRUE(o->dataDir.empty());
    EXPECT_FALSE(o->help);
    EXPECT_EQ(o->market, ExchangeMarket::Sim);
}

TEST(ExchangeOptions, EveryOption) {
    const Result<ExchangeOptions> o = ParseExchangeOptions(
        {"--port",       "0",        "--port-file", "p.txt", "--bind",           "0.0.0.0",
         "--sender",     "S",        "--target",    "T",     "--data-dir",       "d",
         "--journal",    "j.txt",    "--seed",      "42",    "--halt",           "IBM, MSFT,",
         "--fill-delay", "500",      "--clip",      "100",   "--quote-interval", "50",
         "--rest",       "--market", "STEADY"});
    ASSERT_TRUE(o.ok()) << o.error().message;
    EXPECT_EQ(o->market, ExchangeMarket::Steady);
    EXPECT_EQ(o->port, 0);
    EXPECT_EQ(o->portFile, "p.txt");
    EXPECT_EQ(o->bindAddress, "0.0.0.0");
    EXPECT_EQ(o->senderCompID, "S");
    EXPECT_EQ(o->targetCompID, "T");
    EXPECT_EQ(o->dataDir, "d");
    EXPECT_EQ(o->journalFile, "j.txt");
    EXPECT_EQ(o->seed, 42u);
    EXPECT_EQ(o->halted, (std::vector<std::string>{"IBM", "MSFT"}));
    EXPECT_EQ(o->fillDelayMs, 500);
    EXPECT_EQ(o->clipSize, 100);
    EXPECT_EQ(o->quoteIntervalMs, 50);
    EXPECT_TRUE(o->restOnly);
}

TEST(ExchangeOptions, BadCommandLinesAreExplained) {
    const std::vector<std::vector<std::string>> rows = {
        {"--port"},        {"--port", "x"},  {"--port", "65536"},  {"--port", "-1"},
        {"--seed", "1.5"}, {"--sender", ""}, {"--clip", "-3"},     {"--quote-interval", "1"},
        {"--unknown"},     {"9878"},         {"--market", "wild"}, {"--market"},
    };
    for (const auto& args : rows) {
        const Result<ExchangeOptions> o = ParseExchangeOptions(args);
        EXPECT_FALSE(o.ok()) << args[0];
        if (!o.ok()) {
            EXPECT_NE(o.error().message.find(args[0]), std::string::npos) << o.error().message;
        }
    }
}

TEST(ExchangeOptions, HelpNamesEveryOption) {
    const std::string usage = ExchangeUsage();
    for (const char* option : {"--port", "--port-file", "--bind", "--sender", "--target",
                               "--data-dir", "--journal", "--seed", "--halt", "--fill-delay",
                               "--clip", "--quote-interval", "--rest", "--market", "--help"}) {
        EXPECT_NE(usage.find(option), std::string::npos) << option;
    }
    EXPECT_TRUE(ParseExchangeOptions({"--help"})->help);
}

} // namespace
} // namespace wicker
