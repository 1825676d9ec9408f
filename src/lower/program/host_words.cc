// Words of the host's language.
#include "lower/program/host_words.h"

#include <assert.h>
#include <string.h>

#include <string>

#include "lower/lines/lines.h"
#include "lower/program/called_functions.h"
#include "support/allocation.h"
#include "syntax/scan/spellings.h"
#include "translate/host_queries.h"
#include "translate/text_forms.h"

namespace {

// I is no keyword, but stands for itself in every position.
constexpr const char *KEYWORDS[] = {"I",   "and",  "break",  "by",   "do", "elif",  "else", "end",
                                    "for", "from", "global", "if",   "in", "local", "next", "not",
                                    "or",  "proc", "return", "then", "to", "uses",  "while"};

constexpr const char *BARE_NAMES[] = {"AllNonZero",    "ArrayDims",   "ArrayNumElems",
                                      "ArrayTools",    "Concatenate", "HermitianTranspose",
                                      "LinearAlgebra", "Matrix",      "QXR",
                                      "Size",          "Transpose",   "Vector",
                                      "_nresults",     "args",        "column",
                                      "columns",       "copy",        "eval",
                                      "evalf",         "evalhf",      "false",
                                      "getfield",      "horzcat",     "i",
                                      "isfield",       "map",         "mldivide",
                                      "mpower",        "mrdivide",    "mul",
                                      "nargs",         "rhs",         "row",
                                      "rtable",        "scan",        "seq",
                                      "setdiff",       "setfield",    "subtype",
                                      "system",        "true",        "vertcat",
                                      "with",          "zip"};

// Words by a hash of their ends and length: most names meet an empty slot. The name of a field
// between quotes may be empty.
struct WordTable {
    static constexpr size_t SIZE = 256;
    const char *words[SIZE];

    static constexpr size_t hash(const char *word, size_t length) {
        auto byte = [word](size_t at) { return static_cast<unsigned char>(word[at]); };
        return (byte(0) * 7 + byte(length ? length - 1 : 0) * 3 + byte(length / 2) + length * 11) %
               SIZE;
    }
    constexpr void enter(const char *word) {
        size_t at = hash(word, std::char_traits<char>::length(word));
        while (words[at]) at = (at + 1) % SIZE;
        words[at] = word;
    }
    bool has(const char *name) const {
        for (size_t at = hash(name, strlen(name)); words[at]; at = (at + 1) % SIZE)
            if (strcmp(words[at], name) == 0) return true;
        return false;
    }
};

template <size_t COUNT>
constexpr WordTable table_of(const char *const (&list)[COUNT]) {
    WordTable table = {};
    for (const char *word : list) table.enter(word);
    return table;
}

constexpr WordTable KeywordTable = table_of(KEYWORDS);
constexpr WordTable BareNameTable = table_of(BARE_NAMES);

bool looks_generated(const char *name) {
    return has_prefix(name, "qxrp_") || has_prefix(name, "switch_condition");
}

bool is_scripts(const Scope *scope) { return scope->owner->kind == NODE_FILE; }

// Globals are called alike in all functions: they do not make way for others.
bool is_free(const Symbol *symbol, const char *name) {
    if (symbol->flags & SYMBOL_GLOBAL) return true;
    const char *known = interned(name);
    return !known || !find_symbol(symbol->scope, known);
}

const char *own_name(const Symbol *symbol) {
    const char *name = symbol->name;
    if (!must_change_name(symbol)) return name;
    do name = form_text("m_%s", {name});
    while (!is_free(symbol, name));
    return name;
}

// Names that the forms of loops and of value lists make up.
bool is_forms_own(const char *name) {
    if (strcmp(name, "i") == 0 || strcmp(name, "j") == 0) return true;
    return *name == 'A' && name[1] && name[strspn(name + 1, "0123456789") + 1] == '\0';
}

}  // namespace

bool is_host_keyword(const char *name) { return KeywordTable.has(name); }

bool is_host_word(const char *name) {
    return KeywordTable.has(name) || BareNameTable.has(name) || looks_generated(name);
}

bool must_change_name(const Symbol *symbol) {
    if (is_host_word(symbol->name)) return true;
    if (symbol->flags & SYMBOL_GLOBAL) return false;
    if ((symbol->flags & SYMBOL_CALLED) && !symbol->definition) return true;
    return is_scripts(symbol->scope) && is_used_by_procedure(symbol->name);
}

const char *written_name(Symbol *symbol) {
    assert(symbol && "names are settled before they are lowered");
    if (symbol->written) return symbol->written;
    // functions of the program are not offered
    const char *answer = symbol->definition ? nullptr : translate_name(symbol->name);
    symbol->written = answer ? StrDup(answer) : own_name(symbol);
    return symbol->written;
}

const char *head_name(Symbol *parameter) {
    const char *name = written_name(parameter);
    if (!is_copied_parameter(parameter)) return name;
    return form_text(is_forms_own(parameter->name) ? "qxrp_m_%s" : "qxrp_%s", {parameter->name});
}

const char *written_field(const char *name) {
    return is_host_keyword(name) ? form_text("m_%s", {name}) : name;
}
