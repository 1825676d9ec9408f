// Name tables: hash, key copies and text comparison over the generic table.
#include "support/string_hash.h"

#include <string.h>

#include "run/run_end.h"

namespace {

struct StringPair {
    char *text;  // private copy of the key, after the record in the same block
    HashValue value;
};

int has_text(HashValue stored, const void *probe) {
    return strcmp(static_cast<StringPair *>(stored)->text, static_cast<const char *>(probe)) == 0;
}

StringPair *new_pair(HashTable *table, const char *text, HashValue value) {
    size_t size = strlen(text) + 1;
    StringPair *pair = static_cast<StringPair *>(HashAlloc(table, sizeof(StringPair) + size));
    if (!pair) end_run(OUT_OF_MEMORY);
    pair->text = reinterpret_cast<char *>(pair + 1);
    pair->value = value;
    memcpy(pair->text, text, size);
    return pair;
}

struct StringVisitor {
    StringHashVisit visit;
    void *datum;
};

int visit_pair(HashValue stored, void *datum, void *) {
    StringPair *pair = static_cast<StringPair *>(stored);
    StringVisitor *visitor = static_cast<StringVisitor *>(datum);
    return visitor->visit(pair->text, pair->value, visitor->datum);
}

}  // namespace

int32_t string_hash(const char *text) {
    // Bytes count as signed numbers; the arithmetic wraps around at 32 bits.
    auto at = [text](size_t i) { return static_cast<uint32_t>(static_cast<signed char>(text[i])); };
    auto mix = [](uint32_t hash, uint32_t byte) { return 57u * (hash + byte - 65u); };
    size_t length = strlen(text);
    uint32_t hash = mix(0, at(0));
    if (length > 0) hash = mix(hash, at(length - 1));
    if (length > 1) {
        hash = mix(hash, at(length / 2));
        hash = mix(hash, at(length - 2));
        hash += static_cast<uint32_t>(length);
    }
    return static_cast<int32_t>(hash);
}

int StringHashInsert(HashTable *table, const char *text, HashValue value) {
    StringPair *pair = new_pair(table, text, value);
    if (!HashInsert(table, string_hash(text), pair)) {
        HashFree(table, pair);
        end_run(OUT_OF_MEMORY);
    }
    return 1;
}

HashValue StringHashLookup(const HashTable *table, const char *text) {
    HashValue pair;
    if (!HashLookup(table, string_hash(text), &pair, text, has_text)) return nullptr;
    return static_cast<StringPair *>(pair)->value;
}

int StringHashUpdate(HashTable *table, const char *text, HashValue new_value) {
    HashUpdateFunction replace = [](HashValue *slot, HashValue value) {
        static_cast<StringPair *>(*slot)->value = value;
        return 1;
    };
    return HashUpdate(table, string_hash(text), new_value, text, has_text, replace);
}

int StringHashRemove(HashTable *table, const char *text) {
    HashValue pair;
    if (!HashRemove(table, string_hash(text), &pair, text, has_text)) return 0;
    HashFree(table, pair);
    return 1;
}

int StringHashForEach(const HashTable *table, void *datum, StringHashVisit visit) {
    StringVisitor visitor = {visit, datum};
    return HashForEach(table, &visitor, nullptr, visit_pair);
}

int StringHashForEachPair(const HashTable *table, void *datum, StringHashVisit visit) {
    return StringHashForEach(table, datum, visit);
}

int freeStringCallback(HashValue pair, void *table, void *) {
    HashFree(static_cast<HashTable *>(table), pair);
    return 1;
}

void StringHashDestroy(HashTable *table) {
    if (!table) return;
    HashForEach(table, table, nullptr, freeStringCallback);
    HashDestroy(table);
}

void add_name(HashTable *set, const char *text) {
    if (!StringHashLookup(set, text)) StringHashInsert(set, text, const_cast<char *>(text));
}
