// clear and clearvars. The host's language takes no variable away: it is made empty, as one that
// has never been set is where an element or a field of it is set.
#include "lower/statements/clears.h"

#include <fnmatch.h>
#include <string.h>

#include "lower/calls/calls.h"
#include "lower/calls/keyword_calls.h"
#include "lower/expressions/expressions.h"
#include "lower/lines/gaps.h"
#include "lower/lines/pieces.h"
#include "lower/program/called_functions.h"
#include "lower/program/context.h"
#include "lower/program/host_words.h"
#include "lower/targets/part_starts.h"
#include "syntax/names/clear_words.h"
#include "syntax/scan/spellings.h"
#include "syntax/values/values.h"

namespace {

// What one statement clears.
struct Clearing {
    const Node *statement;
    const Node *first;   // name or pattern; null for all variables
    const Node *except;  // first of those that stay; null for none
    const Node *end;     // after the last of first
    bool is_global;
};

// Looking at a symbol costs 1: a long source of many such statements stays linear.
constexpr int32_t COST_OF_LINE = 100;
constexpr int32_t MOST_COST = 1000000;

bool is_one_of(const char *text, std::initializer_list<const char *> words) {
    for (const char *word : words)
        if (strcmp(text, word) == 0) return true;
    return false;
}

bool is_listed(const char *name, const Node *first, const Node *end) {
    for (const Node *word = first; word != end; word = word->next)
        if (fnmatch(word->text, name, 0) == 0) return true;
    return false;
}

// Whether the text in front of the statement, or a loop around it, may have set the variable.
bool may_be_set(const Symbol *symbol, const Node *statement) {
    const ScriptContext *script = &Lowering.script;
    bool is_own = !script->is_open || Lowering.scope->owner == CurrentFile->tree;
    bool is_ordered = is_own && script->loops == 0 && !(symbol->flags & SYMBOL_IN_SCRIPT);
    if (!is_ordered || symbol->position > 0) return true;
    return symbol->first_set > 0 && symbol->first_set <= statement->offset;
}

bool can_be_emptied(const Symbol *symbol, const Clearing *clearing) {
    bool is_kept = (symbol->flags & (SYMBOL_GLOBAL | SYMBOL_PERSISTENT)) != 0;
    if (!is_variable(symbol) || is_kept != clearing->is_global) return false;
    if (symbol->position > 0 && !is_copied_parameter(symbol)) return false;
    return is_kept || may_be_set(symbol, clearing->statement);
}

// As a variable is in front of the first selector after it.
const char *empty_text(const Symbol *symbol) {
    if (symbol->start) return start_text(symbol->start, is_always_cell(symbol));
    switch (kinds_of(cleared_value(symbol))) {
        case MAY_BE_CELL: return EMPTY_CELL;
        case MAY_BE_RECORD: return new_keyword_call("struct", {})->text;
        default: return "Vector()";
    }
}

void put_empty(Symbol *symbol) {
    put_line("%s := %s;", {written_name(symbol), empty_text(symbol)});
    if (symbol->presence) put_line("%s := 0;", {symbol->presence});
    Lowering.clearing_cost += COST_OF_LINE;
}

// Variables that are assigned as a whole need nothing: they are not read before.
bool begins_in_parts(const Symbol *symbol) {
    return (symbol->flags & SYMBOL_CHANGED) && !symbol->loops;
}

void put_matching(const Clearing *clearing) {
    for (Symbol *symbol = Lowering.scope->first_symbol; symbol; symbol = symbol->next) {
        if (Lowering.clearing_cost++ > MOST_COST) break;
        bool is_meant = clearing->first ? is_listed(symbol->name, clearing->first, clearing->end)
                                        : begins_in_parts(symbol);
        if (!is_meant || !can_be_emptied(symbol, clearing)) continue;
        if (!is_listed(symbol->name, clearing->except, nullptr)) put_empty(symbol);
    }
}

Symbol *symbol_of_word(const Node *word) { return find_symbol(Lowering.scope, intern(word->text)); }

void put_named(const Clearing *clearing) {
    for (const Node *word = clearing->first; word != clearing->end; word = word->next) {
        Symbol *symbol = symbol_of_word(word);
        if (symbol && can_be_emptied(symbol, clearing)) put_empty(symbol);
    }
}

// Those of other functions are not seen.
bool are_globals_known(const Clearing *clearing) {
    if (!clearing->is_global) return true;
    for (const Node *word = clearing->first; word != clearing->end; word = word->next) {
        const Symbol *symbol = symbol_of_word(word);
        if (!symbol || !(symbol->flags & SYMBOL_GLOBAL)) return false;
    }
    return true;
}

bool has_pattern(const Clearing *clearing) {
    for (const Node *word = clearing->first; word != clearing->end; word = word->next)
        if (strpbrk(word->text, "*?[")) return true;
    return false;
}

// Sets what after the options is meant. False for options that are not known.
bool read_words(const Node *first, Clearing *clearing) {
    if (means_all(first)) return !first || !first->next;
    if (is_one_of(first->text, {"global", "-global", "-g"})) {
        clearing->is_global = true;
        first = first->next;
        if (!first) return false;
    }
    if (is_one_of(first->text, {"-x", "-exclusive"})) {
        clearing->except = first->next;
        return true;
    }
    clearing->first = first;
    for (const Node *word = first; word; word = word->next) {
        if (strcmp(word->text, "-except") == 0) {
            if (word == first) clearing->first = nullptr;
            clearing->end = word;
            clearing->except = word->next;
            return true;
        }
        if (word->text[0] == '-') return false;
    }
    return true;
}

bool clears_functions(const Node *first) {
    return first && is_one_of(first->text,
                              {"functions", "-functions", "-f", "mex", "-mex", "java", "import"});
}

bool is_called(const Node *name) {
    return is_variable(name->symbol) || own_function(name) || is_function_of_file(name);
}

// The host's form of the statement, or null.
const mExpr *host_form(const ClearWords *words) {
    ExprList list = {};
    for (const Node *word = words->first; word; word = word->next)
        append_expr(&list, new_leaf(string_text(word->text), SCALAR));
    const mExpr *call = ask_host(words->name->text, list.first, 0);
    free_vExpr(list.first);
    return call;
}

bool put_cleared(const ClearWords *words, const Node *statement) {
    if (clears_functions(words->first)) return true;
    Clearing clearing = {statement, nullptr, nullptr, nullptr, false};
    if (!read_words(words->first, &clearing) || !are_globals_known(&clearing)) return false;
    if (clearing.first && !clearing.except && !has_pattern(&clearing)) {
        put_named(&clearing);
    } else {
        put_matching(&clearing);
    }
    return Lowering.clearing_cost <= MOST_COST;
}

}  // namespace

bool put_clear(const Node *statement) {
    ClearWords words = clear_words(statement);
    if (!words.name || !words.is_known || is_called(words.name)) return false;
    if (host_name(words.name)) return false;
    if (const mExpr *form = host_form(&words)) {
        put_line("%s;", {form->text});
        return true;
    }
    note_piece(words.name, CALL_OF_LANGUAGE);
    if (put_cleared(&words, statement)) return true;
    report_at(CLEAR_COMMAND, statement, {words.name->text});
    return false;
}
