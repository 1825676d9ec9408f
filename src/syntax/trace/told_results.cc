// Results of which somebody outside tells.
#include "syntax/trace/told_results.h"

#include <assert.h>

#include "support/long_string.h"
#include "support/observers.h"
#include "syntax/trace/trace.h"
#include "syntax/tree/result_kinds.h"

namespace {

constexpr Value ARRAY = ANY_SHAPE & ~MAY_BE_SINGLE;

Value value_of_kind(ResultKind kind) {
    switch (kind) {
        case RESULT_NUMBER: return MAY_BE_NUMBER | ANY_SIGN | ONE;
        case RESULT_TRUTH: return ONE_TRUTH;
        case RESULT_TEXT: return ANY_TEXT;
        case RESULT_CELL: return MAY_BE_CELL | ARRAY;
        case RESULT_RECORD: return MAY_BE_RECORD | ANY_SHAPE;
        case RESULT_SEVERAL: return ARITHMETIC | ANY_SIGN | ARRAY;
        default: return 0;
    }
}

// With the dots of packages.
const char *whole_name(const Node *name, const Node *field) {
    if (!field || field->kind != NODE_FIELD) return name->text;
    LongString text = AppendStringToString(NewLongString(), name->text);
    for (; field && field->kind == NODE_FIELD; field = field->next) {
        text = AppendStringToString(text, ".");
        text = AppendStringToString(text, field->text);
    }
    return text;
}

}  // namespace

Value told_value(const Node *name, const Node *selectors) {
    assert(name->kind == NODE_NAME && !is_variable(name->symbol));
    if (!Observing.result_kind) return 0;
    ResultKind kind = Observing.result_kind(Observing.context, whole_name(name, selectors));
    if (kind == RESULT_UNKNOWN) return 0;
    return Finders.definition(name->symbol) ? Value(0) : value_of_kind(kind);
}
