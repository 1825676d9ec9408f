// Functions that ask of which kind a value is.
#include "lower/library/kind_questions.h"

#include <string.h>

#include "lower/expressions/expressions.h"
#include "support/row_index.h"
#include "syntax/names/names.h"
#include "syntax/tree/value.h"

namespace {

/* A kind of which all values answer yes, and those of which some do. Numbers may be those of any of
 * MATLAB's classes. */
struct KindQuestion {
    const char *name;
    Value yes;
    Value perhaps;
};

// clang-format off
constexpr KindQuestion Questions[] = {
    {"ischar",    MAY_BE_TEXT,   MAY_BE_TEXT},
    {"isstr",     MAY_BE_TEXT,   MAY_BE_TEXT},
    {"iscell",    MAY_BE_CELL,   MAY_BE_CELL},
    {"iscellstr", 0,             MAY_BE_CELL},
    {"isstruct",  MAY_BE_RECORD, MAY_BE_RECORD},
    {"islogical", MAY_BE_TRUTH,  MAY_BE_TRUTH},
    {"isnumeric", MAY_BE_NUMBER, MAY_BE_NUMBER},
    {"isfloat",   0,             MAY_BE_NUMBER},
    {"isinteger", 0,             MAY_BE_NUMBER},
    {"isobject",  0,             0},
    {"isreal",    MAY_BE_TEXT | ARITHMETIC, MAY_BE_TEXT | ARITHMETIC},
    {"iscomplex", 0,             0},
};

constexpr KindQuestion Classes[] = {
    {"char",            MAY_BE_TEXT,     MAY_BE_TEXT},
    {"cell",            MAY_BE_CELL,     MAY_BE_CELL},
    {"struct",          MAY_BE_RECORD,   MAY_BE_RECORD},
    {"logical",         MAY_BE_TRUTH,    MAY_BE_TRUTH},
    {"function_handle", MAY_BE_FUNCTION, MAY_BE_FUNCTION},
    {"numeric",         MAY_BE_NUMBER,   MAY_BE_NUMBER},
};
// clang-format on

constexpr auto QuestionIndex = index_rows(Questions);
constexpr auto ClassIndex = index_rows(Classes);

mExpr *new_answer(bool is_yes) { return new_leaf(is_yes ? "true" : "false"); }

// Kinds: not none, and no object, which may answer anything.
mExpr *answer_of(const KindQuestion *question, Value value) {
    Value kinds = kinds_of(value);
    if (!kinds || (kinds & MAY_BE_OTHER)) return nullptr;
    if (is_within(kinds, question->yes)) return new_answer(true);
    return kinds & question->perhaps ? nullptr : new_answer(false);
}

bool is_class_of_numbers(const char *name) {
    constexpr const char *NAMES[] = {"double", "single", "float", "integer"};
    for (const char *each : NAMES)
        if (strcmp(name, each) == 0) return true;
    return strncmp(name, "int", 3) == 0 || strncmp(name, "uint", 4) == 0;
}

// Any other class is one of numbers or of objects.
mExpr *answer_of_class(const Node *class_name, Value value) {
    if (!class_name || class_name->kind != NODE_STRING) return nullptr;
    const char *name = class_name->text;
    if (const KindQuestion *row = find_row(Classes, ClassIndex, name)) return answer_of(row, value);
    Value perhaps = is_class_of_numbers(name) ? MAY_BE_NUMBER : 0;
    KindQuestion other = {name, 0, perhaps};
    return answer_of(&other, value);
}

mExpr *class_of(Value value) {
    for (const KindQuestion &row : Classes)
        if (kinds_of(value) == row.yes && row.yes != MAY_BE_NUMBER)
            return new_leaf(string_text(row.name));
    return nullptr;
}

bool is_known(const char *name, Value value) {
    bool is_of_parts = strcmp(name, "isreal") == 0 || strcmp(name, "iscomplex") == 0;
    bool may_be_complex = (value & ANY_SIGN) == ANY_SIGN && may_be(value, MAY_BE_NUMBER);
    return !is_of_parts || !may_be_complex;
}

// What is left out when the answer is known: nothing that could fail or do something.
bool is_plain(const Node *argument) {
    if (argument->kind == NODE_STRING || argument->kind == NODE_NUMBER) return true;
    bool is_held = argument->kind == NODE_NAME && is_variable(argument->symbol);
    return is_held && !may_be(value_of(argument), MAY_BE_MISSING);
}

}  // namespace

mExpr *new_kind_answer(const OfferedCall *call) {
    if (!has_one_result(call) || call->count < 1 || call->count > 2) return nullptr;
    const Node *argument = without_parens(call->first);
    if (!is_plain(argument)) return nullptr;
    const char *name = call->name->text;
    Value value = value_of(argument);
    if (call->count == 2)
        return strcmp(name, "isa") == 0 ? answer_of_class(call->first->next, value) : nullptr;
    if (strcmp(name, "class") == 0) return class_of(value);
    const KindQuestion *question = find_row(Questions, QuestionIndex, name);
    return question && is_known(name, value) ? answer_of(question, value) : nullptr;
}
