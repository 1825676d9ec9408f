// Functions that the front end brings along.
#include "lower/library/source_calls.h"

#include <assert.h>
#include <string.h>

#include <bit>
#include <iterator>

#include "lower/calls/keyword_calls.h"
#include "lower/calls/plain_calls.h"
#include "lower/conditions/host_conditions.h"
#include "lower/expressions/operands.h"
#include "lower/library/needs.h"
#include "lower/library/sources/sources.h"
#include "lower/program/called_functions.h"
#include "lower/program/context.h"
#include "syntax/names/name_map.h"
#include "syntax/scan/spellings.h"
#include "translate/host_queries.h"
#include "translate/indices.h"
#include "translate/text_forms.h"

namespace {

// In the order of their rows.
LibrarySources (*const Tables[])() = {
    shape_sources, array_sources, fold_sources,   extreme_sources, element_sources, number_sources,
    text_sources,  order_sources, matrix_sources, turn_sources,    curve_sources,   search_sources};

// For each chain the tables that have rows in it, as bits: most have none.
struct TablesOfChains {
    uint16_t of[ROW_CHAINS];
};

TablesOfChains tables_of_chains() {
    TablesOfChains tables = {};
    static_assert(std::size(Tables) <= 16);
    for (size_t k = 0; k < std::size(Tables); k++)
        for (size_t chain = 0; chain < ROW_CHAINS; chain++)
            if (Tables[k]().first[chain]) tables.of[chain] |= static_cast<uint16_t>(1 << k);
    return tables;
}

// The first row of the name that is wanted, or null.
template <typename Test>
const LibrarySource *find_source(RowName name, Test is_wanted) {
    static const TablesOfChains tables = tables_of_chains();
    for (unsigned left = tables.of[name.chain]; left; left &= left - 1) {
        const auto table = Tables[std::countr_zero(left)];
        if (const LibrarySource *row = find_row(table(), name, is_wanted)) return row;
    }
    return nullptr;
}

bool takes_arguments(const LibrarySource *row, const OfferedCall *call) {
    return call->count >= row->least && call->count <= row->most && meets_needs(call, row->needs);
}

// What is called in several ways has a row of its own for values, whose name begins with @.
const char *value_row(const char *name) { return form_text("@%s", {name}); }

// One that gives one result or several, as it is asked for.
const LibrarySource *find_varying(RowName name, const OfferedCall *call) {
    auto takes = [=](const LibrarySource *row) { return takes_arguments(row, call); };
    const LibrarySource *source = find_source(value_row(name.text), takes);
    if (!source) source = find_source(name, takes);
    return source && source->results > 1 ? source : nullptr;
}

const LibrarySource *find_called(RowName name, const OfferedCall *call) {
    if (call->results == HOST_RESULTS_VARY) return find_varying(name, call);
    return find_source(name, [=](const LibrarySource *row) {
        return call->results <= row->results && takes_arguments(row, call);
    });
}

// The word of a row for which "$1" to "$4" stands.
const char *word_at(const LibrarySource *row, const char *at) {
    assert(at[1] >= '1' && at[1] <= '4');
    return row->words[at[1] - '1'];
}

// The source with its words in their places.
const char *new_source_text(const LibrarySource *row) {
    size_t size = strlen(row->text) + 1;
    for (const char *at = row->text; (at = strchr(at, '$')); at++) size += strlen(word_at(row, at));
    Writer to = new_text(size);
    const char *text = to.at;
    const char *from = row->text;
    for (const char *at = from; (at = strchr(at, '$')); at++) {
        write_bytes(&to, from, static_cast<size_t>(at - from));
        write_text(&to, word_at(row, at));
        from = at + strlen("$1");
    }
    write_text(&to, from);
    return text;
}

NameMap Texts;  // of rows with words, by the rows' addresses

// One text for all rows that have it, as it is one function.
const char *text_of(const LibrarySource *row) {
    if (!*row->words) return row->text;
    const char *key = reinterpret_cast<const char *>(row);
    if (const void *known = find_name(&Texts, key)) return static_cast<const char *>(known);
    const char *text = intern(new_source_text(row));
    enter_name(&Texts, key, const_cast<char *>(text));
    return text;
}

// Whether a condition may take the call as it is. What is asked about an array after ~ is told with
// it.
bool is_test(const LibrarySource *row, const OfferedCall *call) {
    if (!(row->needs & GIVES_TRUTH) || !call->is_tested || !Lowering.takes_test) return false;
    return !Lowering.is_denied || (row->needs & NEEDS_DENIED);
}

mExpr *new_call_test(const mExpr *call) {
    Test test = new_test(call->text);
    return new_tested_value(&test);
}

}  // namespace

void begin_source_calls() { Texts = {}; }

mExpr *new_source_call(RowName name, const OfferedCall *call) {
    const LibrarySource *source = find_called(name, call);
    if (!source) return nullptr;
    const char *procedure = supplied_function(text_of(source));
    if (!source->given) {
        mExpr *value = new_call_of(procedure, call->values);
        return is_test(source, call) ? new_call_test(value) : value;
    }
    ExprList values = {};
    append_expr(&values, new_leaf(source->given));
    for (const vExpr *cell = call->values; cell; cell = cell->next)
        append_expr(&values, cell->item);
    return new_call_of(procedure, values.first);
}

const char *source_call_text(const char *row, std::initializer_list<const char *> operands) {
    ExprList values = {};
    for (const char *operand : operands) append_expr(&values, new_leaf(operand));
    OfferedCall call = {nullptr, nullptr, values.first, static_cast<int>(operands.size()),
                        1,       false};
    const mExpr *answer = new_source_call(row, &call);
    free_vExpr(values.first);
    return answer->text;
}

mExpr *new_source_call(const OfferedCall *call) {
    return new_source_call(row_name(call->name->text), call);
}

namespace {

bool is_value_row(const LibrarySource *row) {
    uint32_t known = NEEDS_NO_TEXT | (CurrentFile->is_library ? FOR_LIBRARY : NEEDS_NOTHING);
    return !row->given && row->least == 1 && !(row->needs & ~known);
}

}  // namespace

const char *source_value(const char *name) {
    const LibrarySource *source =
        find_source(value_row(name), [](const LibrarySource *) { return true; });
    if (!source) source = find_source(name, is_value_row);
    return source ? supplied_function(text_of(source)) : nullptr;
}

void call_all_sources() {
    for (const auto table : Tables) {
        const LibrarySources rows = table();
        for (size_t k = 0; k < rows.count; k++) supplied_function(text_of(&rows.rows[k]));
    }
}
