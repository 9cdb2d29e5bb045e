#include "common/RuntimeError.h"
#include "storage/HashTable.h"

#include <functional>
#include <limits>

#include <gtest/gtest.h>

namespace wicker {
namespace {

using Strings = std::vector<std::string>;

struct Failure {
    int number = 0;
    std::string text;
};

Failure FailureOf(const std::function<void()>& f) {
    try {
        f();
    } catch (const RuntimeError& e) {
        return {e.number(), e.description()};
    }
    return {};
}

// Everything a caller can see of a table.
struct Snapshot {
    Strings keys;
    std::vector<HashValue> values;
    int32_t count;
    int32_t slots;
    bool ignoreCase;
    bool operator==(const Snapshot&) const = default;
};

Snapshot Take(const HashTable& t) {
    return {t.Keys(), t.Values(), t.Count(), t.SlotCount(), t.IgnoreCase()};
}

template <class Row> std::string RowName(const testing::TestParamInfo<Row>& row) {
    return row.param.name;
}

int64_t IntOf(const HashTable& t, std::string_view key) {
    return std::get<int64_t>(t.Item(key));
}

// --- hashing -------------------------------------------------------------------------------

struct HashRow {
    const char* name;
    std::string key;
    uint32_t hash;
};

class HashTableHash : public testing::TestWithParam<HashRow> {};

TEST_P(HashTableHash, XorOfLittleEndianWords) {
    EXPECT_EQ(static_cast<uint32_t>(HashTable::HashCode(GetParam().key)), GetParam().hash);
}

INSTANTIATE_TEST_SUITE_P(
    Keys, HashTableHash,
    testing::Values(HashRow{"OneByte", "A", 0x41}, HashRow{"OneWord", "ABCD", 0x44434241},
                    HashRow{"Reversed", "DCBA", 0x41424344},
                    HashRow{"PartialLastWord", "ABCDE", 0x44434241 ^ 0x45},
                    HashRow{"RepeatedBlockCancels", "ABCDABCD", 0},
                    HashRow{"FourBlocksCancel", "WXYZWXYZWXYZWXYZ", 0},
                    HashRow{"LatinLetterIsOneByte", "\xC3\xA9", 0xE9},         // é
                    HashRow{"EuroIsOneByte", "\xE2\x82\xAC", 0x80},            // €
                    HashRow{"OutsideCodePage", "\xE4\xB8\xAD", '?'},           // 中
                    HashRow{"BrokenUtf8", "\xC3", '?'},                        // lone lead byte
                    HashRow{"HighFourthByte", "ABC\xE2\x82\xAC", 0x80434241}), // ABC€
    RowName<HashRow>);

// --- chains --------------------------------------------------------------------------------

TEST(HashTable, RepeatedBlockKeysShareBucketZeroInAdditionOrder) {
    HashTable t;
    t.SetSize(16);
    t.Add("ABCDABCD", int64_t{1});
    t.Add("A", int64_t{2}); // bucket 1
    t.Add("abcdabcdabcdabcd", int64_t{3});
    t.Add("WXYZWXYZ", int64_t{4});
    EXPECT_EQ(t.Keys(), (Strings{"ABCDABCD", "abcdabcdabcdabcd", "WXYZWXYZ", "A"}));
}

struct RemoveRow {
    const char* name;
    std::string removed;
    Strings left;
};

class HashTableChain : public testing::TestWithParam<RemoveRow> {};

TEST_P(HashTableChain, OthersStayReachableAndTheSlotIsReused) {
    HashTable t;
    t.SetSize(1, 5, 5); // one bucket: a single chain, no spare slot
    for (int i = 1; i <= 5; ++i) {
        t.Add("K" + std::to_string(i), int64_t{i});
    }
    t.Remove(GetParam().removed);
    EXPECT_FALSE(t.Exists(GetParam().removed));
    EXPECT_EQ(t.Keys(), GetParam().left);
    for (const auto& k : GetParam().left) {
        EXPECT_EQ(IntOf(t, k), std::stoi(k.substr(1))) << k;
    }
    t.Add(GetParam().removed, int64_t{0}); // goes to the end of the chain, in the freed slot
    Strings expected = GetParam().left;
    expected.push_back(GetParam().removed);
    EXPECT_EQ(t.Keys(), expected);
    EXPECT_EQ(t.SlotCount(), 5);
    EXPECT_EQ(t.Count(), 5);
}

INSTANTIATE_TEST_SUITE_P(OneChain, HashTableChain,
                         testing::Values(RemoveRow{"First", "K1", {"K2", "K3", "K4", "K5"}},
                                         RemoveRow{"Middle", "K3", {"K1", "K2", "K4", "K5"}},
                                         RemoveRow{"Last", "K5", {"K1", "K2", "K3", "K4"}}),
                         RowName<RemoveRow>);

TEST(HashTable, EmptiedChainTakesNewItems) {
    HashTable t;
    t.SetSize(1, 2, 2);
    t.Add("a", int64_t{1});
    t.Add("b", int64_t{2});
    t.Remove("a");
    t.Remove("b");
    EXPECT_EQ(t.Count(), 0);
    EXPECT_TRUE(t.Keys().empty());
    t.Add("c", int64_t{3});
    EXPECT_EQ(t.Keys(), Strings{"c"});
    EXPECT_EQ(t.SlotCount(), 2);
}

TEST(HashTable, KeysAndValuesInBucketOrderThenAdditionOrder) {
    HashTable t;
    t.SetSize(16);
    t.Add("B", int64_t{1}); // 0x42 % 16 = 2
    t.Add("A", int64_t{2}); // 0x41 % 16 = 1
    t.Add("R", int64_t{3}); // 0x52 % 16 = 2
    t.Add("Q", int64_t{4}); // 0x51 % 16 = 1
    EXPECT_EQ(t.Keys(), (Strings{"A", "Q", "B", "R"}));
    EXPECT_EQ(t.Values(), (std::vector<HashValue>{int64_t{2}, int64_t{4}, int64_t{1}, int64_t{3}}));
}

// --- sizes and slots -----------------------------------------------------------------------

TEST(HashTable, GrowsByOneChunkAndRecyclesFreedSlots) {
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
    t.Add("K5", int64_t{-5});
    EXPECT_EQ(t.SlotCount(), 3072);
    EXPECT_EQ(t.Count(), 2049);
    for (int i = 1; i <= 2049; ++i) {
        ASSERT_EQ(IntOf(t, "K" + std::to_string(i)), i == 5 ? -5 : i) << i;
    }
}

TEST(HashTable, DefaultsAreTheStandardSizes) {
    HashTable t;
    EXPECT_EQ(t.SlotCount(), 2048);
    EXPECT_FALSE(t.IgnoreCase());
    EXPECT_EQ(t.Count(), 0);
}

TEST(HashTable, SetSizeKeepsListAndChunkWhenNotPositiveAndDiscardsItems) {
    HashTable t;
    t.SetSize(8, 3, 2);
    t.Add("x", int64_t{1});
    t.SetSize(16, 0, -1);
    EXPECT_EQ(t.Count(), 0);
    EXPECT_FALSE(t.Exists("x"));
    EXPECT_EQ(t.SlotCount(), 3);
    for (int i = 0; i < 4; ++i) {
        t.Add("k" + std::to_string(i), int64_t{i});
    }
    EXPECT_EQ(t.SlotCount(), 5); // 3 + one chunk of 2
}

TEST(HashTable, RemoveAllKeepsSizesAndCaseMode) {
    HashTable t;
    t.SetSize(4, 3, 2);
    t.setIgnoreCase(true);
    for (int i = 0; i < 4; ++i) {
        t.Add("k" + std::to_string(i), int64_t{i});
    }
    t.RemoveAll();
    EXPECT_EQ(t.Count(), 0);
    EXPECT_TRUE(t.Keys().empty());
    EXPECT_EQ(t.SlotCount(), 3);
    EXPECT_TRUE(t.IgnoreCase());
    t.setIgnoreCase(false); // allowed again: nothing left
    EXPECT_FALSE(t.IgnoreCase());
}

// --- values --------------------------------------------------------------------------------

TEST(HashTable, ItemOfAbsentKeyIsEmptyAndAddsNothing) {
    HashTable t;
    EXPECT_EQ(t.Item("x"), HashValue{});
    EXPECT_EQ(t.Count(), 0);
    EXPECT_FALSE(t.Exists("x"));
}

TEST(HashTable, SetItemAddsThenReplaces) {
    HashTable t;
    t.setItem("x", 1.5);
    EXPECT_EQ(t.Count(), 1);
    t.setItem("x", std::string("text"));
    EXPECT_EQ(t.Count(), 1);
    EXPECT_EQ(t.Item("x"), HashValue{std::string("text")});
    t.setItem("empty", HashValue{}); // an empty value is still an item
    EXPECT_TRUE(t.Exists("empty"));
    EXPECT_EQ(t.Count(), 2);
}

TEST(HashTable, ObjectsAreHeldByReferenceUntilRemoved) {
    HashTable t;
    auto obj = std::make_shared<int>(7);
    t.Add("o", obj);
    *obj = 8;
    const auto held = std::get<std::shared_ptr<void>>(t.Item("o"));
    EXPECT_EQ(*std::static_pointer_cast<int>(held), 8);
    EXPECT_EQ(obj.use_count(), 3); // obj, the table, held
    t.Remove("o");
    EXPECT_EQ(obj.use_count(), 2);
}

// --- case ----------------------------------------------------------------------------------

struct CaseRow {
    const char* name;
    std::string added;
    std::string asked;
    std::string stored;
};

class HashTableCase : public testing::TestWithParam<CaseRow> {};

TEST_P(HashTableCase, KeysAreStoredInUpperCase) {
    HashTable t;
    t.setIgnoreCase(true);
    t.Add(GetParam().added, int64_t{1});
    EXPECT_TRUE(t.Exists(GetParam().asked));
    EXPECT_EQ(t.Keys(), Strings{GetParam().stored});
    EXPECT_EQ(FailureOf([&] { t.Add(GetParam().asked, int64_t{2}); }).number, err::DuplicateKey);
    t.Remove(GetParam().asked);
    EXPECT_EQ(t.Count(), 0);
}

INSTANTIATE_TEST_SUITE_P(
    Keys, HashTableCase,
    testing::Values(CaseRow{"Ascii", "abc", "ABC", "ABC"}, CaseRow{"Mixed", "aBc9", "AbC9", "ABC9"},
                    CaseRow{"AccentedLetters", "\xC3\xA9t\xC3\xA9", "\xC3\x89T\xC3\x89",
                            "\xC3\x89T\xC3\x89"},                              // été / ÉTÉ
                    CaseRow{"YDiaeresis", "\xC3\xBF", "\xC5\xB8", "\xC5\xB8"}, // ÿ / Ÿ
                    CaseRow{"Ligature", "\xC5\x93", "\xC5\x92", "\xC5\x92"},   // œ / Œ
                    CaseRow{"Caron", "\xC5\xA1\xC5\xBE", "\xC5\xA0\xC5\xBD",
                            "\xC5\xA0\xC5\xBD"}, // šž / ŠŽ
                    CaseRow{"SharpSStays",
                            "stra\xC3\x9F"
                            "e",
                            "STRA\xC3\x9F"
                            "E",
                            "STRA\xC3\x9F"
                            "E"}, // ß
                    CaseRow{"DivisionSignStays", "a\xC3\xB7", "A\xC3\xB7", "A\xC3\xB7"}),
    RowName<CaseRow>);

TEST(HashTable, IgnoreCaseKeepsKeysOutsideTheCodePageApart) {
    HashTable t;
    t.setIgnoreCase(true);
    t.Add("\xE4\xB8\xAD", int64_t{1}); // 中
    t.Add("\xE6\x97\xA5", int64_t{2}); // 日: same bucket ('?'), different key
    t.Add("?", int64_t{3});
    EXPECT_EQ(t.Keys(), (Strings{"\xE4\xB8\xAD", "\xE6\x97\xA5", "?"}));
    EXPECT_EQ(IntOf(t, "\xE6\x97\xA5"), 2);
}

TEST(HashTable, CaseMattersByDefault) {
    HashTable t;
    t.Add("abc", int64_t{1});
    t.Add("ABC", int64_t{2});
    EXPECT_EQ(t.Count(), 2);
    EXPECT_EQ(IntOf(t, "abc"), 1);
    EXPECT_FALSE(t.Exists("Abc"));
}

// --- errors --------------------------------------------------------------------------------

struct ErrorRow {
    const char* name;
    std::function<void(HashTable&)> op;
    int number;
    std::string text;
};

class HashTableError : public testing::TestWithParam<ErrorRow> {};

TEST_P(HashTableError, RaisesAndLeavesTheTableAsItWas) {
    HashTable t;
    t.SetSize(4, 2, 1);
    t.Add("K1", int64_t{1});
    t.Add("K2", std::string("two"));
    const Snapshot before = Take(t);
    const Failure f = FailureOf([&] { GetParam().op(t); });
    EXPECT_EQ(f.number, GetParam().number);
    EXPECT_EQ(f.text, GetParam().text);
    EXPECT_EQ(Take(t), before);
}

const std::string kNegative = "ABC\xC3\xBF"; // ABCÿ: fourth byte 0xFF sets the sign bit

INSTANTIATE_TEST_SUITE_P(
    Operations, HashTableError,
    testing::Values(
        ErrorRow{"AddEmptyKey", [](HashTable& table) { table.Add("", int64_t{1}); }, 1001,
                 "Invalid key"},
        ErrorRow{"ExistsEmptyKey", [](HashTable& table) { table.Exists(""); }, 1001, "Invalid key"},
        ErrorRow{"ItemEmptyKey", [](HashTable& table) { table.Item(""); }, 1001, "Invalid key"},
        ErrorRow{"SetItemEmptyKey", [](HashTable& table) { table.setItem("", 1.0); }, 1001,
                 "Invalid key"},
        ErrorRow{"RemoveEmptyKey", [](HashTable& table) { table.Remove(""); }, 1001, "Invalid key"},
        ErrorRow{"IgnoreCaseWithItems", [](HashTable& table) { table.setIgnoreCase(true); }, 1001,
                 "The Hash Table isn't empty"},
        ErrorRow{"AddExistingKey", [](HashTable& table) { table.Add("K2", int64_t{9}); },
                 err::DuplicateKey, err::DuplicateKeyText},
        ErrorRow{"RemoveAbsentKey", [](HashTable& table) { table.Remove("K3"); }, err::InvalidCall,
                 err::InvalidCallText},
        ErrorRow{"AddNegativeHash", [](HashTable& table) { table.Add(kNegative, int64_t{1}); },
                 err::SubscriptOutOfRange, err::SubscriptText},
        ErrorRow{"ExistsNegativeHash", [](HashTable& table) { table.Exists(kNegative); },
                 err::SubscriptOutOfRange, err::SubscriptText},
        ErrorRow{"ItemNegativeHash", [](HashTable& table) { table.Item(kNegative); },
                 err::SubscriptOutOfRange, err::SubscriptText},
        ErrorRow{"SetItemNegativeHash", [](HashTable& table) { table.setItem(kNegative, 1.0); },
                 err::SubscriptOutOfRange, err::SubscriptText},
        ErrorRow{"RemoveNegativeHash", [](HashTable& table) { table.Remove(kNegative); },
                 err::SubscriptOutOfRange, err::SubscriptText},
        ErrorRow{"NoBuckets", [](HashTable& table) { table.SetSize(0, 10, 10); },
                 err::SubscriptOutOfRange, err::SubscriptText},
        ErrorRow{"NegativeBuckets", [](HashTable& table) { table.SetSize(-3); },
                 err::SubscriptOutOfRange, err::SubscriptText}),
    RowName<ErrorRow>);

TEST(HashTable, SlotNumbersPastTheLongRangeOverflow) {
    HashTable t;
    t.SetSize(4, 2, std::numeric_limits<int32_t>::max());
    t.Add("a", int64_t{1});
    t.Add("b", int64_t{2});
    const Snapshot before = Take(t);
    EXPECT_EQ(FailureOf([&] { t.Add("c", int64_t{3}); }).number, err::Overflow);
    EXPECT_EQ(Take(t), before);
}

} // namespace
} // namespace wicker
