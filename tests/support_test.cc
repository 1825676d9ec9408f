/* Hash tables, tracked allocation and growing texts. */
#include <gtest/gtest.h>

#include <algorithm>
#include <climits>
#include <cstring>
#include <string>
#include <vector>

#include "driver/run.h"
#include "emit/statement_writer.h"
#include "support/allocation.h"
#include "support/long_string.h"
#include "support/string_hash.h"
#include "translate/expressions.h"
#include "translate/operators.h"

namespace mtranslate {

namespace {

HashValue value_of(std::intptr_t number) { return reinterpret_cast<HashValue>(number); }
int is_probe(HashValue stored, const void *probe) { return stored == probe; }
int is_any(HashValue, const void *) { return 1; }

struct Entry {
    int32_t key;
    std::intptr_t value;
    bool operator==(const Entry &) const = default;
};
using Entries = std::vector<Entry>;

Entries entries(const HashTable *table) {
    Entries list;
    HashForEachPair(table, &list, [](int32_t key, HashValue value, void *datum) {
        static_cast<Entries *>(datum)->push_back({key, reinterpret_cast<std::intptr_t>(value)});
        return 1;
    });
    return list;
}

HashTable *table_of(int32_t buckets, const Entries &inserted) {
    HashTable *table = HashCreate(buckets);
    for (const Entry &entry : inserted) HashInsert(table, entry.key, value_of(entry.value));
    return table;
}

TEST(HashTable, acts_on_the_first_match_in_order) {
    HashTable *table = table_of(10, {{7, 1}, {7, 2}, {7, 3}, {17, 4}});
    HashValue found = value_of(99);
    EXPECT_EQ(HashLookup(table, 27, &found, nullptr, is_any), 0);
    EXPECT_EQ(HashLookup(table, 17, &found, value_of(1), is_probe), 0);  // of another key
    EXPECT_EQ(found, value_of(99));
    EXPECT_EQ(HashLookup(table, 7, &found, nullptr, is_any), 1);
    EXPECT_EQ(found, value_of(1));
    HashUpdateFunction replace = [](HashValue *slot, HashValue value) {
        *slot = value;
        return 0;
    };
    EXPECT_EQ(HashUpdate(table, 7, value_of(5), value_of(2), is_probe, replace), 1);
    EXPECT_EQ(HashUpdate(table, 7, value_of(5), value_of(2), is_probe, replace), 0);
    EXPECT_EQ(HashRemove(table, 7, &found, nullptr, is_any), 1);
    EXPECT_EQ(HashRemove(table, 7, nullptr, value_of(1), is_probe), 0);
    EXPECT_EQ(HashRemoveRecent(table, 7, nullptr, value_of(1), is_probe), 0);
    EXPECT_EQ(entries(table), (Entries{{17, 4}, {7, 5}, {7, 3}}));  // the last fills the gap
    int visits = 0;
    HashVisit stop_at_second = [](HashValue, void *count, void *) {
        return ++*static_cast<int *>(count) < 2 ? 1 : 0;
    };
    EXPECT_EQ(HashForEach(table, &visits, nullptr, stop_at_second), 0);
    EXPECT_EQ(visits, 2);
    HashDestroy(table);
    HashDestroy(nullptr);
}

TEST(HashTable, finds_the_bucket_by_the_magnitude_of_the_key) {
    const struct {
        int32_t buckets;
        Entries inserted, visited;
    } rows[] = {{1024, {{6, 0}, {-5, 1}, {5, 2}, {-4, 3}}, {{-4, 3}, {-5, 1}, {5, 2}, {6, 0}}},
                {1024, {{1, 0}, {INT_MIN, 1}}, {{INT_MIN, 1}, {1, 0}}},
                {5120, {{2049, 0}, {INT_MIN, 1}, {2047, 2}}, {{2047, 2}, {INT_MIN, 1}, {2049, 0}}},
                {129, {{128, 0}, {64, 1}, {63, 2}, {0, 3}}, {{0, 3}, {63, 2}, {64, 1}, {128, 0}}},
                {64, {{63, 0}}, {{63, 0}}},
                {100, {}, {}},
                {0, {}, {}}};
    for (const auto &row : rows) {
        HashTable *table = table_of(row.buckets, row.inserted);
        EXPECT_EQ(entries(table), row.visited);
        HashDestroy(table);
    }
}

TEST(HashTable, grows_sorts_and_copies_buckets) {
    Entries inserted{{INT_MIN, 0}};
    for (int i = 1; i < 256; i++) inserted.push_back({i * 7919 % 100 - 50, i});
    HashTable *table = table_of(1, inserted);
    EXPECT_EQ(table->buckets[0]->capacity, 256);
    inserted.push_back({0, 256});
    HashInsert(table, 0, value_of(256));
    EXPECT_EQ(table->buckets[0]->capacity, 512);
    HashTable *copy = HashCopy(table);
    testing::internal::CaptureStdout();
    HashSort(table);
    EXPECT_EQ(testing::internal::GetCapturedStdout(), "");
    const Entries sorted = entries(table);
    auto by_key = [](const Entry &a, const Entry &b) { return a.key < b.key; };
    EXPECT_TRUE(std::is_sorted(sorted.begin(), sorted.end(), by_key));
    EXPECT_TRUE(std::is_permutation(sorted.begin(), sorted.end(), inserted.begin()));
    EXPECT_EQ(entries(copy), inserted);
    HashDestroy(table);
    HashDestroy(copy);
}

TEST(StringHash, tells_texts_of_one_hash_apart) {
    const std::pair<const char *, int32_t> hashes[] = {
        {"", -3705}, {"A", 0}, {"a", 105792}, {"\xff", -218196}, {"abc", 344197695}};
    for (const auto &[text, hash] : hashes) EXPECT_EQ(string_hash(text), hash) << text;
    EXPECT_EQ(string_hash("abcd"), string_hash("axcd"));
    HashTable *table = HashCreate(1024);
    std::string key = "abcd";
    StringHashInsert(table, key.c_str(), value_of(1));
    key = "axcd";
    StringHashInsert(table, key.c_str(), value_of(2));
    StringHashInsert(table, "abcd", value_of(3));
    EXPECT_EQ(StringHashLookup(table, "abcd"), value_of(1));
    EXPECT_EQ(StringHashLookup(table, "aycd"), nullptr);
    EXPECT_EQ(StringHashUpdate(table, "axcd", value_of(4)), 1);
    EXPECT_EQ(StringHashUpdate(table, "aycd", value_of(4)), 0);
    EXPECT_EQ(StringHashRemove(table, "abcd"), 1);
    EXPECT_EQ(StringHashRemove(table, "aycd"), 0);
    StringHashVisit note = [](const char *text, HashValue value, void *datum) {
        static_cast<std::string *>(datum)->append(text).append(value == value_of(3) ? "3 " : "4 ");
        return value == value_of(3) ? 1 : 0;
    };
    for (const auto visit_all : {StringHashForEach, StringHashForEachPair}) {
        std::string seen;
        EXPECT_EQ(visit_all(table, &seen, note), 0);
        EXPECT_EQ(seen, "abcd3 axcd4 ");
    }
    StringHashDestroy(table);
    StringHashDestroy(nullptr);
}

TEST(Diagnosis, goes_to_standard_output) {
    begin_run();
    const mExpr *expr = new_form_mExpr(0, 1, "x", {});
    testing::internal::CaptureStdout();
    EXPECT_EQ(showString("a"), 1);
    EXPECT_STREQ(new_operator2(-2, expr, expr)->text, "");
    EXPECT_STREQ(new_operator1(-2, expr)->text, "");
    EXPECT_EQ(testing::internal::GetCapturedStdout(), "a \nid -2 unexpected\n");
    release_run();
}

/* The tables of a run, without a run; every kept part is a block. */
class Tracked : public testing::Test {
protected:
    void SetUp() override {
        PartsShareBlocks = false;
        begin_run();
        before_ = entries(AllocationTable).size();
    }
    void TearDown() override {
        release_run();
        PartsShareBlocks = shares_;
    }
    size_t blocks() const { return entries(AllocationTable).size() - before_; }

private:
    size_t before_ = 0;
    const bool shares_ = PartsShareBlocks;
};

TEST_F(Tracked, blocks_are_listed_once) {
    EXPECT_STREQ(StrDup(""), "");
    char *text = static_cast<char *>(Realloc(nullptr, 4));
    memcpy(text, "abc", 4);
    text = static_cast<char *>(Realloc(text, 100000));
    EXPECT_STREQ(text, "abc");
    EXPECT_EQ(blocks(), 2u);
    Free(text);
    Free(nullptr);
    for (int i = 0; i < 1000; i++) Free(Alloc(32));  // addresses come again
    std::vector<void *> many(1000);
    for (void *&block : many) block = Alloc(16);
    EXPECT_EQ(blocks(), 1001u);
    for (void *block : many) Free(block);
    free_vExpr(alloc_vExpr(alloc_mExpr()));
    free_vExpr(nullptr);
    EXPECT_EQ(blocks(), 2u);  // the cell went, its record stays
}

/* The first field of the header that is reached through the pointer in front of the text. */
int32_t capacity(LongString handle) {
    int32_t *header;
    memcpy(&header, handle - sizeof header, sizeof header);
    return *header;
}

TEST_F(Tracked, texts_grow_by_half) {
    const struct {
        size_t first, then;  // lengths of the texts appended
        int32_t capacity;
    } rows[] = {{0, 0, 256},   {255, 0, 256}, {256, 0, 384}, {400, 0, 576},
                {255, 1, 384}, {382, 1, 384}, {383, 1, 576}, {10, 1000, 1296}};
    for (const auto &row : rows) {
        LongString text =
            AppendStringToString(NewLongString(), std::string(row.first, 'a').c_str());
        text = AppendStringToString(text, std::string(row.then, 'b').c_str());
        EXPECT_EQ(capacity(text), row.capacity) << row.first << " " << row.then;
        EXPECT_EQ(text, std::string(row.first, 'a') + std::string(row.then, 'b'));
        EXPECT_EQ(static_cast<size_t>(LengthString(text)), row.first + row.then);
        DisposeString(text);
    }
    EXPECT_EQ(blocks(), 0u);
    LongString text = NewLongString();
    const char *const start = text;
    for (int i = 0; i < 255; i++) text = AppendToString(text, 'x');
    EXPECT_EQ(text, start);
    text = AppendToString(text, 'y');
    EXPECT_EQ(text, std::string(255, 'x') + "y");
    ClearLongString(text);
    EXPECT_STREQ(text, "");
    const char *const cleared = text;
    text = AppendStringToString(text, "again");
    EXPECT_EQ(text, cleared);
    EXPECT_STREQ(text, "again");
    EXPECT_EQ(capacity(text), 384);
}

}  // namespace

}  // namespace mtranslate
