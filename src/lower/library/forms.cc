// Functions that one expression of the host says.
#include "lower/library/forms.h"

#include <string.h>

#include "lower/calls/keyword_calls.h"
#include "lower/conditions/host_conditions.h"
#include "lower/expressions/operands.h"
#include "lower/library/needs.h"
#include "support/row_index.h"
#include "syntax/scan/spellings.h"
#include "translate/package_prefix.h"
#include "translate/text_forms.h"

namespace {

struct Form {
    const char *name;
    int8_t count; /* of the arguments */
    uint32_t needs;
    const char *text;      /* {1}, {2}, {3}: the arguments */
    int8_t comparison = 0; /* with right: OP_EQ ...; 0 for none */
    const char *right = nullptr;
    HostLevel level = HOST_ATOM;
};

// clang-format off
/* The first row that fits counts. An argument that stands in a form twice, or in a seq, is a number
 * or, in the library's own functions, a variable: nothing is computed twice. */
constexpr Form Forms[] = {
    {"numel",    1, NEEDS_NOTHING,   "ArrayNumElems({1},'All')"},
    {"length",   1, NEEDS_VECTOR,    "ArrayNumElems({1},'All')"},
    {"isempty",  1, NEEDS_NOTHING,   "ArrayNumElems({1},'All')", OP_EQ, "0"},
    {"isscalar", 1, NEEDS_NOTHING,   "ArrayNumElems({1},'All')", OP_EQ, "1"},
    {"size",     1, NEEDS_NOTHING,   "ArrayTools:-Size({1})"},
    {"size",     2, NEEDS_PLANE,     "ArrayTools:-Size({1})({2})"},
    {"ndims",    1, NEEDS_NOTHING,   "ArrayNumElems(ArrayTools:-Size({1}),'All')"},
    {"ismatrix", 1, NEEDS_NOTHING,   "ArrayNumElems(ArrayTools:-Size({1}),'All')", OP_EQ, "2"},
    {"rows",     1, NEEDS_NOTHING,   "ArrayTools:-Size({1})(1)"},
    {"columns",  1, NEEDS_NOTHING,   "ArrayTools:-Size({1})(2)"},
    {"zeros",    0, NEEDS_NOTHING,   "0"},
    {"ones",     0, NEEDS_NOTHING,   "1"},
    {"zeros",    2, NEEDS_NO_TEXT | NEEDS_ONE_FIRST, "Vector[row]([seq(0,qxrp_i=1..{2})])"},
    {"zeros",    2, NEEDS_NO_TEXT | NEEDS_ONE_LAST,  "Vector[column]([seq(0,qxrp_i=1..{1})])"},
    {"ones",     2, NEEDS_NO_TEXT | NEEDS_ONE_FIRST, "Vector[row]([seq(1,qxrp_i=1..{2})])"},
    {"ones",     2, NEEDS_NO_TEXT | NEEDS_ONE_LAST,  "Vector[column]([seq(1,qxrp_i=1..{1})])"},
    {"zeros",    1, NEEDS_COUNTS | IN_PACKAGE,
     "ArrayTools:-Concatenate(1, seq(Vector[row]([seq(0,qxrp_j=1..{1})]),qxrp_i=1..{1}))"},
    {"zeros",    2, NEEDS_COUNTS | IN_PACKAGE,
     "ArrayTools:-Concatenate(1, seq(Vector[row]([seq(0,qxrp_j=1..{2})]),qxrp_i=1..{1}))"},
    {"ones",     1, NEEDS_COUNTS | IN_PACKAGE,
     "ArrayTools:-Concatenate(1, seq(Vector[row]([seq(1,qxrp_j=1..{1})]),qxrp_i=1..{1}))"},
    {"ones",     2, NEEDS_COUNTS | IN_PACKAGE,
     "ArrayTools:-Concatenate(1, seq(Vector[row]([seq(1,qxrp_j=1..{2})]),qxrp_i=1..{1}))"},
    {"cell",     0, NEEDS_NOTHING,   "rtable([],subtype='Vector[row]')"},
    {"cell",     2, NEEDS_ONE_FIRST, "rtable([seq(Vector(),qxrp_i=1..{2})],subtype='Vector[row]')"},
    {"cell",     2, NEEDS_ONE_LAST,
     "rtable([seq(Vector(),qxrp_i=1..{1})],subtype='Vector[column]')"},
    {"cell",     1, NEEDS_COUNTS | IN_PACKAGE,
     "ArrayTools:-Concatenate(1, "
     "seq(rtable([seq(Vector(),qxrp_j=1..{1})],subtype='Vector[row]'),qxrp_i=1..{1}))"},
    {"cell",     2, NEEDS_COUNTS | IN_PACKAGE,
     "ArrayTools:-Concatenate(1, "
     "seq(rtable([seq(Vector(),qxrp_j=1..{2})],subtype='Vector[row]'),qxrp_i=1..{1}))"},
    {"pi",       0, NEEDS_NOTHING,   "3.141592653589793"},
    {"Inf",      0, NEEDS_NOTHING,   "1./0", 0, nullptr, HOST_PRODUCT},
    {"inf",      0, NEEDS_NOTHING,   "1./0", 0, nullptr, HOST_PRODUCT},
    {"NaN",      0, NEEDS_NOTHING,   "0./0", 0, nullptr, HOST_PRODUCT},
    {"nan",      0, NEEDS_NOTHING,   "0./0", 0, nullptr, HOST_PRODUCT},
    {"eps",      0, NEEDS_NOTHING,   "2^(-52)", 0, nullptr, HOST_POWER},
    {"logical",  1, NEEDS_NO_TEXT,   "evalhf(zip(`<>`,eval({1}),eval(0)))"},
    {"xor",      2, NEEDS_NO_TEXT,
     "evalhf(zip(`<>`,eval(evalhf(zip(`<>`,eval({1}),eval(0)))),"
     "eval(evalhf(zip(`<>`,eval({2}),eval(0))))))"},
    {"isequal",  2, NEEDS_SINGLES | NEEDS_NUMBERS,   "{1}", OP_EQ, "{2}"},
    {"full",     1, NEEDS_NO_TEXT,   "{1}"},
    {"sparse",   1, NEEDS_NO_TEXT,   "{1}"},
    {"conj",     1, NEEDS_NO_TEXT | IN_PACKAGE,
     "LinearAlgebra:-Transpose(LinearAlgebra:-HermitianTranspose({1}))"},
    {"stacked",  2, FOR_LIBRARY | IN_PACKAGE, "ArrayTools:-Concatenate(1, seq({1},qxrp_i=1..{2}))"},
    {"joined",   2, FOR_LIBRARY | IN_PACKAGE, "ArrayTools:-Concatenate(2, seq({1},qxrp_i=1..{2}))"},
    {"row_of",   1, FOR_LIBRARY, "Vector[row]([{1}])"},
    {"from_to",  3, FOR_LIBRARY, "{1}({2}..{3})"},
    {"cells_of", 1, FOR_LIBRARY, "rtable([{1}],subtype='Vector[row]')"},
    {"called",   2, FOR_LIBRARY, "seq({1}({2}(qxrp_i)),qxrp_i=1..ArrayNumElems({2},'All'))"},
    {"called",   3, FOR_LIBRARY,
     "seq({1}({2}(qxrp_i), {3}(qxrp_i)),qxrp_i=1..ArrayNumElems({2},'All'))"},
};
// clang-format on

constexpr auto FormIndex = index_rows(Forms);

// What stands alone between commas, brackets and the dots of a range is kept together by them.
bool is_alone(const char *form, const char *placeholder) {
    const char *next = placeholder + strlen("{1}");
    return placeholder > form && strchr("([ .", placeholder[-1]) && *next && strchr(",)]", *next);
}

const char *argument_text(const char *form, const char *placeholder, const vExpr *values) {
    for (char number = placeholder[1]; number > '1'; number--) values = values->next;
    return is_alone(form, placeholder) ? plain_value(values->item)->text : values->item->text;
}

size_t expanded_size(const char *form, const vExpr *values) {
    size_t size = strlen(form) + 1;
    for (const char *at = form; (at = strchr(at, '{')); at++)
        size += strlen(argument_text(form, at, values));
    return size;
}

// The form with the values in the places of the arguments. Nothing else in a form has braces.
const char *expand(const char *form, const vExpr *values) {
    Writer to = new_text(expanded_size(form, values));
    const char *expanded = to.at;
    const char *from = form;
    for (const char *at = form; (at = strchr(at, '{')); at++) {
        write_bytes(&to, from, static_cast<size_t>(at - from));
        write_text(&to, argument_text(form, at, values));
        from = at + strlen("{1}");
    }
    write_text(&to, from);
    return expanded;
}

mExpr *new_value(const Form *form, const vExpr *values) {
    const char *text = expand(form->text, values);
    if (form->comparison == 0) return new_leaf(text);
    Test relation = new_relation(text, form->comparison, expand(form->right, values), true);
    return new_truth_value(&relation);
}

mExpr *new_form(const Form *form, const vExpr *values) {
    Operand value = {new_value(form, values), form->level};
    if (form->needs & IN_PACKAGE) value.expr->text = note_package(value.expr->text);
    return in_parentheses(&value);
}

}  // namespace

mExpr *new_form_call(const OfferedCall *call) {
    if (!has_one_result(call)) return nullptr;
    const Form *form = find_row(Forms, FormIndex, row_name(call->name->text), [=](const Form *row) {
        return row->count == call->count && meets_needs(call, row->needs);
    });
    return form ? new_form(form, call->values) : nullptr;
}

const char *form_value(const char *name) {
    const Form *form = find_row(Forms, FormIndex, name, [](const Form *row) {
        return row->count == 1 && !(row->needs & ~(NEEDS_NO_TEXT | IN_PACKAGE));
    });
    if (!form) return nullptr;
    vExpr *parameter = alloc_vExpr(new_leaf("qxrp_x"));
    const char *value = new_value(form, parameter)->text;
    free_vExpr(parameter);
    return form_text("proc( qxrp_x ) return %s; end proc", {value});
}
