// Operators: a row per operator, read by the two builders.
#include "translate/operators.h"

#include <stdio.h>
#include <string.h>

#include "lexer/brackets.h"
#include "translate/assignment.h"
#include "translate/binary_text.h"
#include "translate/package_prefix.h"
#include "translate/text_forms.h"

namespace {

// Which operands must be known scalars for the plain form.
enum PlainWhen { NEVER, RIGHT_SCALAR, BOTH_SCALAR };

// What stands around the operands of a form.
struct Form {
    const char *open;
    const char *middle;
    const char *close;
};

struct BinaryForm {
    int id;
    PlainWhen plain_when;
    Form plain;
    Form general;
    bool swapped;  // the right operand comes first
};

// clang-format off
const BinaryForm BinaryForms[] = {
    {OP_DIVIDE,          RIGHT_SCALAR, {"", "/", ""}, {"QXR[mrdivide](", ",", ")"},           false},
    {OP_LEFT_DIVIDE,     NEVER,        {},            {"QXR[mldivide](", ",", ")"},           false},
    {OP_DOT_DIVIDE,      BOTH_SCALAR,  {"", "/", ""}, {"", " /~ ", ""},                       false},
    {OP_DOT_LEFT_DIVIDE, BOTH_SCALAR,  {"", "/", ""}, {"", " /~ ", ""},                       true},
    {OP_MINUS,           BOTH_SCALAR,  {"", "-", ""}, {"", " -~ ", ""},                       false},
    {OP_TIMES,           NEVER,        {},            {"", " . ", ""},                        false},
    {OP_DOT_TIMES,       NEVER,        {},            {"", " *~ ", ""},                       false},
    {OP_PLUS,            BOTH_SCALAR,  {"", "+", ""}, {"", " +~ ", ""},                       false},
    {OP_POWER,           RIGHT_SCALAR, {"", "^", ""}, {"evalf(QXR[mpower](", ",", "))"},      false},
    {OP_DOT_POWER,       BOTH_SCALAR,  {"", "^", ""}, {"", " ^~ ", ""},                       false},
    {OP_AND,             NEVER,        {},  {"evalhf(zip(`and`,eval(", "),eval(", ")))"},     false},
    {OP_OR,              NEVER,        {},  {"evalhf(zip(`or`,eval(", "),eval(", ")))"},      false},
    {OP_EQ,              NEVER,        {},  {"evalhf(zip(`=`,eval(", "),eval(", ")))"},       false},
    {OP_NE,              NEVER,        {},  {"evalhf(zip(`<>`,eval(", "),eval(", ")))"},      false},
    {OP_LT,              NEVER,        {},  {"evalhf(zip(`<`,eval(", "),eval(", ")))"},       false},
    {OP_LE,              NEVER,        {},  {"evalhf(zip(`<=`,eval(", "),eval(", ")))"},      false},
    {OP_GT,              NEVER,        {},  {"evalhf(zip(`>`,eval(", "),eval(", ")))"},       false},
    {OP_GE,              NEVER,        {},  {"evalhf(zip(`>=`,eval(", "),eval(", ")))"},      false},
};

struct UnaryForm {
    int id;
    const char *(*prefix)();  // null for no member of a package
    const char *open;
    const char *close;
};

const UnaryForm UnaryForms[] = {
    {OP_UNARY_PLUS,    nullptr,               "+",                        ""},
    {OP_UNARY_MINUS,   nullptr,               "-",                        ""},
    {OP_NOT,           nullptr,               "evalhf(map(`not`,eval(",   ")))"},
    {OP_DOT_TRANSPOSE, linear_algebra_prefix, "Transpose(",               ")"},
    {OP_TRANSPOSE,     linear_algebra_prefix, "HermitianTranspose(",      ")"},
};
// clang-format on

const BinaryForm *find_form(int id) {
    for (const BinaryForm &form : BinaryForms) {
        if (form.id == id) return &form;
    }
    return nullptr;
}

bool is_plain(const BinaryForm *form, const mExpr *left, const mExpr *right) {
    switch (form->plain_when) {
        case BOTH_SCALAR: return left->scalar && right->scalar;
        case RIGHT_SCALAR: return right->scalar;
        default: return false;
    }
}

// An operator built directly inside parentheses has a pair of its own.
bool in_parentheses() { return BracketDelimiter == IN_PARENTHESES; }
const char *opening() { return in_parentheses() ? "(" : ""; }
const char *closing() { return in_parentheses() ? ")" : ""; }

mExpr *new_binary(const BinaryForm *binary, const mExpr *left, const mExpr *right) {
    const Form *form = is_plain(binary, left, right) ? &binary->plain : &binary->general;
    const char *open = opening();
    const char *close = closing();
    int scalar = left->scalar && right->scalar;
    if (binary->swapped) {
        return new_binary_expr(binary->id, scalar, left,
                               {open, form->open, right->text, form->middle}, {form->close, close});
    }
    return new_binary_expr(binary->id, scalar, left, {open, form->open},
                           {form->middle, right->text, form->close, close});
}

mExpr *new_assignment(const mExpr *target, const mExpr *value) {
    Writer to;
    size_t size =
        assignment_size(target->text, value->text) + strlen(opening()) + strlen(closing());
    mExpr *expr = alloc_text_mExpr(OP_ASSIGN, target->scalar && value->scalar, size, &to);
    write_text(&to, opening());
    write_assignment(&to, target->text, value->text);
    write_text(&to, closing());
    return expr;
}

mExpr *new_field(const mExpr *left, const mExpr *right) {
    return new_form_mExpr(OP_FIELD, left->scalar && right->scalar, "%s%s:-%s%s",
                          {opening(), left->text, right->text, closing()});
}

}  // namespace

mExpr *new_operator2(int id, const mExpr *left, const mExpr *right) {
    if (const BinaryForm *binary = find_form(id)) return new_binary(binary, left, right);
    if (id == OP_ASSIGN) return new_assignment(left, right);
    if (id == OP_FIELD) return new_field(left, right);
    printf("id %d unexpected\n", id);
    return new_form_mExpr(id, left->scalar && right->scalar, "", {});
}

mExpr *new_operator1(int id, const mExpr *operand) {
    for (const UnaryForm &form : UnaryForms) {
        if (form.id != id) continue;
        const char *prefix = form.prefix ? form.prefix() : "";
        return new_form_mExpr(id, operand->scalar, "%s%s%s%s%s%s",
                              {opening(), prefix, form.open, operand->text, form.close, closing()});
    }
    return new_form_mExpr(id, operand->scalar, "", {});
}
