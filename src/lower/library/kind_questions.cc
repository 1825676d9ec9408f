// Functions that ask of which kind a value is.
#include "lower/library/kind_questions.h"

#include <string.h>

#include "lower/expressions/expressions.h"
#include "support/same_text.h"
#include "syntax/library/kind_tests.h"
#include "syntax/names/names.h"
#include "syntax/scan/spellings.h"
#include "syntax/tree/value.h"

namespace {

/* Questions that look at more than the kind, as far as that settles them. No object is offered. */
constexpr KindTest Questions[] = {
    {"isobject", 0, 0},
    {"isreal", MAY_BE_TEXT | ARITHMETIC, MAY_BE_TEXT | ARITHMETIC},
    {"iscomplex", 0, 0},
};

// Whether something is a handle is left to the host.
const KindTest *question_of(RowName name) {
    for (const KindTest &row : Questions)
        if (is_same_text(row.name, name.text)) return &row;
    return is_same_text(name.text, "is_function_handle") ? nullptr : find_kind_test(name);
}

mExpr *new_answer(bool is_yes) { return new_leaf(is_yes ? "true" : "false"); }

// Kinds: not none, and no object, which may answer anything.
mExpr *answer_of(const KindTest *question, Value value) {
    Value kinds = kinds_of(value);
    if (!kinds || (kinds & MAY_BE_OTHER)) return nullptr;
    if (is_within(kinds, question->yes)) return new_answer(true);
    return kinds & question->perhaps ? nullptr : new_answer(false);
}

bool is_sized_integer(const char *name) {
    return strncmp(name, "int", 3) == 0 || strncmp(name, "uint", 4) == 0;
}

// Any other class is one of numbers or of objects.
mExpr *answer_of_class(const Node *class_name, Value value) {
    if (!class_name || class_name->kind != NODE_STRING) return nullptr;
    const char *name = class_name->text;
    if (const KindTest *row = find_class_test(name)) return answer_of(row, value);
    Value perhaps = is_sized_integer(name) ? MAY_BE_NUMBER : 0;
    KindTest other = {name, 0, perhaps};
    return answer_of(&other, value);
}

mExpr *class_of(Value value) {
    const char *name = class_of_kinds(kinds_of(value));
    return name ? new_leaf(string_text(name)) : nullptr;
}

bool is_known(const char *name, Value value) {
    bool is_of_parts = is_same_text(name, "isreal") || is_same_text(name, "iscomplex");
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
        return is_same_text(name, "isa") ? answer_of_class(call->first->next, value) : nullptr;
    if (is_same_text(name, "class")) return class_of(value);
    const KindTest *question = question_of(row_name(name));
    return question && is_known(name, value) ? answer_of(question, value) : nullptr;
}
