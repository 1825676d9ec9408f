/* Tables of named rows, and the index by which a row is found. The compiler works the index out, so
 * that rows stand in the order that a reader wants; rows of the same name are found in that order.
 */
#pragma once

#include <stddef.h>
#include <stdint.h>
#include <string.h>

/* Rows whose names have the same hash are a chain. Rows are counted from 1; 0 ends a chain. */
constexpr size_t ROW_CHAINS = 512;

template <size_t COUNT>
struct RowIndex {
    uint16_t first[ROW_CHAINS];
    uint16_t next[COUNT];
};

/* The first letters tell most names apart. */
constexpr size_t row_chain(const char *name) {
    uint32_t hash = 0;
    for (int k = 0; k < 4 && name[k]; k++) hash = hash * 37 + static_cast<unsigned char>(name[k]);
    return (hash ^ hash >> 9) % ROW_CHAINS;
}

/* A name that is looked for. Where it is looked for often, its chain is known already. */
struct RowName {
    constexpr RowName(const char *name) : text(name), chain(row_chain(name)) {}
    constexpr RowName(const char *name, size_t known_chain) : text(name), chain(known_chain) {}

    const char *text;
    size_t chain;
};

/* Of rows that have a name each. */
template <typename Row, size_t COUNT>
constexpr RowIndex<COUNT> index_rows(const Row (&rows)[COUNT]) {
    static_assert(COUNT < UINT16_MAX);
    RowIndex<COUNT> index = {};
    for (size_t number = COUNT; number > 0; number--) {
        uint16_t *first = &index.first[row_chain(rows[number - 1].name)];
        index.next[number - 1] = *first;
        *first = static_cast<uint16_t>(number);
    }
    return index;
}

/* A table with its index. */
template <typename Row>
struct NamedRows {
    const Row *rows;
    size_t count;
    const uint16_t *first;
    const uint16_t *next;
};

template <typename Row, size_t COUNT>
constexpr NamedRows<Row> named_rows(const Row (&rows)[COUNT], const RowIndex<COUNT> &index) {
    return {rows, COUNT, index.first, index.next};
}

/* The first row of the name that is wanted, or null; is_wanted gets a row. */
template <typename Row, typename Test>
const Row *find_row(const NamedRows<Row> &table, RowName name, Test is_wanted) {
    for (size_t number = table.first[name.chain]; number; number = table.next[number - 1]) {
        const Row *row = table.rows + number - 1;
        bool may_be_same = row->name[0] == name.text[0];  // few of a chain: most need no call
        if (may_be_same && strcmp(row->name, name.text) == 0 && is_wanted(row)) return row;
    }
    return nullptr;
}

/* The same in one table. */
template <typename Row, size_t COUNT, typename Test>
const Row *find_row(const Row (&rows)[COUNT], const RowIndex<COUNT> &index, RowName name,
                    Test is_wanted) {
    return find_row(named_rows(rows, index), name, is_wanted);
}

/* The first row of the name, or null. */
template <typename Row, size_t COUNT>
const Row *find_row(const Row (&rows)[COUNT], const RowIndex<COUNT> &index, RowName name) {
    return find_row(rows, index, name, [](const Row *) { return true; });
}
