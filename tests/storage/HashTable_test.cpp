#include "common/RuntimeError.h"
#include "storage/HashTable.h"

#include <gtest/gtest.h>

namespace wicker {
namespace {

using Strings = std::vector<std::string>;

int ErrorOf(auto&& f) {
    try {
        f();
    } catch (const RuntimeError& e) {
        return e.number();
    }
    return 0;
}

TEST(HashTableHash, WordsXoredLittleEndian) {
    EXPECT_NE(HashTable::HashCode("ABCD"), HashTable::HashCode("DCBA"));
    EXPECT_EQ(HashTable::HashCode("ABCD"), 0x44434241);
    EXPECT_EQ(HashTable::HashCode("ABCDABCD"), 0);
    EXPECT_EQ(HashTable::HashCode("A"), 0x41);
    EXPECT_EQ(HashTable::HashCode("ABCDE"), 0x44434241 ^ 0x45);
    EXPECT_EQ(HashTable::HashCode("é"), 0xE9); // one Windows-1252 byte
    EXPECT_EQ(HashTable::HashCode("中"), '?'); // outside the code page
}

TEST(HashTable, RepeatedBlocksShareBucketZeroAndStayReachable) {
    HashTable t;
    const Strings keys = {"ABCDABCD", "WXYZWXYZ", "abcdabcd", "ABCDABCDABCDABCD"};
    for (size_t i = 0; i < keys.size(); ++i) {
        t.Add(keys[i], static_cast<int64_t>(i));
    }
    EXPECT_EQ(t.Keys(), keys);    // one chain, in order of addition
    t.Remove("WXYZWXYZ");         // middle
    t.Remove("ABCDABCD");         // first
    t.Remove("ABCDABCDABCDABCD"); // last
    EXPECT_EQ(t.Keys(), Strings{"abcdabcd"});
    EXPECT_EQ(std::get<int64_t>(t.Item("abcdabcd")), 2);
    EXPECT_EQ(t.Count(), 1);
}

TEST(HashTable, ErrorsLeaveTheTableAsItWas) {
    HashTable t;
    t.Add("K1", int64_t{1});
    EXPECT_EQ(ErrorOf([&] { t.Add("K1", int64_t{2}); }), err::DuplicateKey);
    EXPECT_EQ(ErrorOf([&] { t.Remove("nope"); }), err::InvalidCall);
    EXPECT_EQ(ErrorOf([&] { t.Add("", int64_t{1}); }), 1001);
    EXPECT_EQ(ErrorOf([&] { t.setIgnoreCase(true); }), 1001);
    // Fourth byte 0x80 or more leaves the top bit set: negative bucket.
    EXPECT_LT(HashTable::HashCode("ABC\xC3\xBF"), 0); // "ABCÿ"
    EXPECT_EQ(ErrorOf([&] { t.Add("ABCÿ", int64_t{1}); }), err::SubscriptOutOfRange);
    EXPECT_EQ(t.Count(), 1);
    EXPECT_EQ(std::get<int64_t>(t.Item("K1")), 1);
}

TEST(HashTable, IgnoreCaseFoldsKeys) {
    HashTable t;
    t.setIgnoreCase(true);
    t.Add("abc", std::string("v"));
    EXPECT_TRUE(t.Exists("ABC"));
    EXPECT_EQ(t.Keys(), Strings{"ABC"});
    EXPECT_EQ(ErrorOf([&] { t.Add("Abc", int64_t{1}); }), err::DuplicateKey);
}

TEST(HashTable, ItemGetDoesNotAddSetDoes) {
    HashTable t;
    EXPECT_TRUE(std::holds_alternative<std::monostate>(t.Item("x")));
    EXPECT_EQ(t.Count(), 0);
    t.setItem("x", 1.5);
    t.setItem("x", 2.5);
    EXPECT_EQ(t.Count(), 1);
    EXPECT_EQ(std::get<double>(t.Item("x")), 2.5);
    auto obj = std::make_shared<int>(7);
    t.setItem("o", obj);
    EXPECT_EQ(std::get<std::shared_ptr<void>>(t.Item("o")).get(), obj.get()); // by reference
}

TEST(HashTable, GrowsByOneChunkAndRecyclesFreeSlots) {
    HashTable t;
    t.SetSize(1024, 2048, 1024);
    EXPECT_EQ(t.SlotCount(), 2048);
    for (int i = 1; i <= 2048; ++i) {
        t.Add("K" + std::to_string(i), int64_t{i});
    }
    EXPECT_EQ(t.SlotCount(), 2048);
    t.Add("K2049", int64_t{2049});
    EXPECT_EQ(t.SlotCount(), 3072);
    t.Remove("K5");
    t.Add("again", int64_t{0});
    EXPECT_EQ(t.SlotCount(), 3072);
    EXPECT_EQ(t.Count(), 2049);
    for (int i = 1; i <= 2049; ++i) {
        if (i != 5) {
            ASSERT_EQ(std::get<int64_t>(t.Item("K" + std::to_string(i))), i);
        }
    }
    t.RemoveAll();
    EXPECT_EQ(t.Count(), 0);
    EXPECT_EQ(t.SlotCount(), 2048);
}

TEST(HashTable, KeysAndValuesInBucketOrder) {
    HashTable t;
    t.SetSize(16);
    t.Add("B", int64_t{2}); // 0x42 % 16 = 2
    t.Add("A", int64_t{1}); // 0x41 % 16 = 1
    t.Add("R", int64_t{3}); // 0x52 % 16 = 2, after B
    EXPECT_EQ(t.Keys(), (Strings{"A", "B", "R"}));
    const auto v = t.Values();
    ASSERT_EQ(v.size(), 3u);
    EXPECT_EQ(std::get<int64_t>(v[2]), 3);
}

} // namespace
} // namespace wicker
