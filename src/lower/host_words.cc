// Words of the host's language.
#include "lower/host_words.h"

#include <string.h>

#include <algorithm>
#include <iterator>
#include <string_view>

#include "lower/called_functions.h"
#include "lower/lines.h"
#include "support/allocation.h"
#include "translate/host_queries.h"
#include "translate/text_forms.h"

namespace {

// Both lists are sorted. I is no keyword, but stands for itself in every position.
constexpr std::string_view KEYWORDS[] = {
    "I",  "and",   "break", "by",  "do", "elif", "else",   "end",  "for", "from", "global", "if",
    "in", "local", "next",  "not", "or", "proc", "return", "then", "to",  "uses", "while"};

constexpr std::string_view BARE_NAMES[] = {"AllNonZero",    "ArrayDims",   "ArrayNumElems",
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

static_assert(std::is_sorted(std::begin(KEYWORDS), std::end(KEYWORDS)));
static_assert(std::is_sorted(std::begin(BARE_NAMES), std::end(BARE_NAMES)));

bool looks_generated(const char *name) {
    return has_prefix(name, "qxrp_") || has_prefix(name, "switch_condition");
}

bool is_scripts(const Scope *scope) { return scope->owner->kind == NODE_FILE; }

// Globals are called alike in all functions: they do not make way for others.
bool is_free(const Symbol *symbol, const char *name) {
    return (symbol->flags & SYMBOL_GLOBAL) || !find_symbol(symbol->scope, name);
}

bool must_change(const Symbol *symbol) {
    if (is_host_word(symbol->name)) return true;
    if ((symbol->flags & SYMBOL_CALLED) && !symbol->definition) return true;
    if (is_scripts(symbol->scope)) return is_called_by_procedure(symbol->name);
    return false;
}

const char *own_name(const Symbol *symbol) {
    const char *name = symbol->name;
    if (!must_change(symbol)) return name;
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

bool is_host_keyword(const char *name) {
    return std::binary_search(std::begin(KEYWORDS), std::end(KEYWORDS), std::string_view(name));
}

bool is_host_word(const char *name) {
    return is_host_keyword(name) || looks_generated(name) ||
           std::binary_search(std::begin(BARE_NAMES), std::end(BARE_NAMES), std::string_view(name));
}

const char *written_name(Symbol *symbol) {
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
