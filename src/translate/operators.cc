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

bool in_parentheses() { return BracketDelimiter == IN_PARENTHESES; }

mExpr *new_binary(const BinaryForm *binary, const mExpr *left, const mExpr *right) {
    const Form *form = is_plain(binary, left, right) ? &binary->plain : &binary->general;
    const char *open = in_parentheses() ? "(" : "";
    const char *close = in_parentheses() ? ")" : "";
    int scalar = left->scalar && right->scalar;
    if (binary->swapped) {
        return new_binary_expr(binary->id, scalar, left,
                               {open, form->open, right->text, form->middle}, {form->close, close});
    }
    return new_binary_expr(binary->id, scalar, left, {open, form->open},
                           {form->middle, right->text, form->close, close});
}

char *write_unary(char *at, int id, const char *operand) {
    switch (id) {
        case OP_UNARY_PLUS: return write_form(at, "+%s", {operand});
        case OP_UNARY_MINUS: return write_form(at, "-%s", {operand});
        case OP_NOT: return write_form(at, "evalhf(map(`not`,eval(%s)))", {operand});
        case OP_DOT_TRANSPOSE: return with_linear_algebra_prefix(at, "Transpose(%s)", operand);
        case OP_TRANSPOSE: return with_linear_algebra_prefix(at, "HermitianTranspose(%s)", operand);
        default: return at;
    }
}

// A record with room for size bytes of text; "(" is in place when it belongs there.
mExpr *new_operator(int id, size_t size, int scalar, char **at) {
    mExpr *expr = alloc_text_mExpr(id, scalar, size, at);
    if (in_parentheses()) *at = write_text(*at, "(");
    return expr;
}

void finish_operator(char *at) {
    if (in_parentheses()) write_text(at, ")");
}

}  // namespace

mExpr *new_operator2(int id, const mExpr *left, const mExpr *right) {
    if (const BinaryForm *binary = find_form(id)) return new_binary(binary, left, right);
    char *at;
    size_t size = strlen(left->text) + strlen(right->text) + 60;
    mExpr *expr = new_operator(id, size, left->scalar && right->scalar, &at);
    switch (id) {
        case OP_ASSIGN: finish_operator(write_assignment(at, left->text, right->text)); break;
        case OP_FIELD: finish_operator(write_form(at, "%s:-%s", {left->text, right->text})); break;
        default: printf("id %d unexpected\n", id);
    }
    return expr;
}

mExpr *new_operator1(int id, const mExpr *operand) {
    char *at;
    mExpr *expr = new_operator(id, strlen(operand->text) + 50, operand->scalar, &at);
    finish_operator(write_unary(at, id, operand->text));
    return expr;
}
