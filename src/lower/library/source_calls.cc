// Functions that the front end brings along.
#include "lower/library/source_calls.h"

#include <string.h>

#include "lower/called_functions.h"
#include "lower/keyword_calls.h"
#include "lower/library/needs.h"
#include "lower/library/sources.h"
#include "lower/operands.h"
#include "lower/plain_calls.h"
#include "syntax/spellings.h"
#include "translate/host_queries.h"
#include "translate/indices.h"
#include "translate/text_forms.h"

namespace {

// In the order of their rows.
LibrarySources (*const Tables[])() = {shape_sources,   array_sources,   fold_sources,
                                      extreme_sources, element_sources, number_sources,
                                      text_sources,    order_sources,   matrix_sources};

// The first row that is wanted, or null.
template <typename Test>
const LibrarySource *find_source(Test is_wanted) {
    for (const auto table : Tables) {
        const LibrarySources rows = table();
        for (int k = 0; k < rows.count; k++)
            if (is_wanted(&rows.first[k])) return &rows.first[k];
    }
    return nullptr;
}

bool takes_arguments(const LibrarySource *row, const OfferedCall *call) {
    return call->count >= row->least && call->count <= row->most && meets_needs(call, row->needs);
}

bool is_named(const LibrarySource *row, const char *name) { return is_row_of(row->name, name); }

// What is called in several ways has a row of its own for values, whose name begins with @.
bool is_value_of(const LibrarySource *row, const char *name) {
    return *row->name == '@' && strcmp(row->name + 1, name) == 0;
}

// One that gives one result or several, as it is asked for.
const LibrarySource *find_varying(const char *name, const OfferedCall *call) {
    const LibrarySource *source = find_source([=](const LibrarySource *row) {
        return is_value_of(row, name) && takes_arguments(row, call);
    });
    if (!source)
        source = find_source([=](const LibrarySource *row) {
            return is_named(row, name) && takes_arguments(row, call);
        });
    return source && source->results > 1 ? source : nullptr;
}

const LibrarySource *find_called(const char *name, const OfferedCall *call) {
    if (call->results == HOST_RESULTS_VARY) return find_varying(name, call);
    return find_source([=](const LibrarySource *row) {
        return is_named(row, name) && call->results <= row->results && takes_arguments(row, call);
    });
}

bool is_word(const char *text) { return text[0] == '$' && text[1] >= '1' && text[1] <= '4'; }

// The source with its words in their places: one text, as it is one function.
const char *text_of(const LibrarySource *row) {
    if (!*row->words) return row->text;
    size_t size = strlen(row->text) + 1;
    for (const char *at = row->text; *at; at++)
        if (is_word(at)) size += strlen(row->words[at[1] - '1']);
    Writer to = new_text(size);
    const char *text = to.at;
    for (const char *at = row->text; *at; at++) {
        if (is_word(at)) {
            write_text(&to, row->words[*++at - '1']);
        } else {
            write_character(&to, *at);
        }
    }
    return intern(text);
}

}  // namespace

mExpr *new_source_call(const char *name, const OfferedCall *call) {
    const LibrarySource *source = find_called(name, call);
    if (!source) return nullptr;
    const char *procedure = supplied_function(text_of(source));
    if (!source->given) return new_call_of(procedure, call->values);
    ExprList values = {};
    append_expr(&values, new_leaf(source->given));
    for (const vExpr *cell = call->values; cell; cell = cell->next)
        append_expr(&values, cell->item);
    return new_call_of(procedure, values.first);
}

mExpr *new_source_call(const OfferedCall *call) { return new_source_call(call->name->text, call); }

namespace {

bool is_value_row(const LibrarySource *row) {
    uint32_t known = NEEDS_NO_TEXT | (CurrentFile->is_library ? FOR_LIBRARY : NEEDS_NOTHING);
    return !row->given && row->least == 1 && !(row->needs & ~known);
}

}  // namespace

const char *source_value(const char *name) {
    const LibrarySource *source =
        find_source([=](const LibrarySource *row) { return is_value_of(row, name); });
    if (!source)
        source = find_source(
            [=](const LibrarySource *row) { return is_named(row, name) && is_value_row(row); });
    return source ? supplied_function(text_of(source)) : nullptr;
}

void call_all_sources() {
    find_source([](const LibrarySource *row) {
        supplied_function(text_of(row));
        return false;
    });
}
