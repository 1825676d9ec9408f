// Operators: a row per operator, read by the two builders.
#include "translate/operators.h"

#include <stdio.h>
#include <string.h>

#include "lexer/brackets.h"
#include "translate/assignment.h"
#include "translate/package_prefix.h"
#include "translate/text_forms.h"

namespace {

// Which operands must be known scalars for the plain form.
enum PlainWhen { NEVER, RIGHT_SCALAR, BOTH_SCALAR };

struct BinaryForm {
    int id;
    PlainWhen plain_when;
    const char *plain;
    const char *general;
    bool swapped;  // the right operand comes first
};

// clang-format off
const BinaryForm BinaryForms[] = {
    {OP_DIVIDE,          RIGHT_SCALAR, "%s/%s",  "QXR[mrdivide](%s,%s)",                    false},
    {OP_LEFT_DIVIDE,     NEVER,        nullptr,  "QXR[mldivide](%s,%s)",                    false},
    {OP_DOT_DIVIDE,      BOTH_SCALAR,  "%s/%s",  "%s /~ %s",                                false},
    {OP_DOT_LEFT_DIVIDE, BOTH_SCALAR,  "%s/%s",  "%s /~ %s",                                true},
    {OP_MINUS,           BOTH_SCALAR,  "%s-%s",  "%s -~ %s",                                false},
    {OP_TIMES,           NEVER,        nullptr,  "%s . %s",                                 false},
    {OP_DOT_TIMES,       NEVER,        nullptr,  "%s *~ %s",                                false},
    {OP_PLUS,            BOTH_SCALAR,  "%s+%s",  "%s +~ %s",                                false},
    {OP_POWER,           RIGHT_SCALAR, "%s^%s",  "evalf(QXR[mpower](%s,%s))",               false},
    {OP_DOT_POWER,       BOTH_SCALAR,  "%s^%s",  "%s ^~ %s",                                false},
    {OP_AND,             NEVER,        nullptr,  "evalhf(zip(`and`,eval(%s),eval(%s)))",    false},
    {OP_OR,              NEVER,        nullptr,  "evalhf(zip(`or`,eval(%s),eval(%s)))",     false},
    {OP_EQ,              NEVER,        nullptr,  "evalhf(zip(`=`,eval(%s),eval(%s)))",      false},
    {OP_NE,              NEVER,        nullptr,  "evalhf(zip(`<>`,eval(%s),eval(%s)))",     false},
    {OP_LT,              NEVER,        nullptr,  "evalhf(zip(`<`,eval(%s),eval(%s)))",      false},
    {OP_LE,              NEVER,        nullptr,  "evalhf(zip(`<=`,eval(%s),eval(%s)))",     false},
    {OP_GT,              NEVER,        nullptr,  "evalhf(zip(`>`,eval(%s),eval(%s)))",      false},
    {OP_GE,              NEVER,        nullptr,  "evalhf(zip(`>=`,eval(%s),eval(%s)))",     false},
    {OP_FIELD,           NEVER,        nullptr,  "%s:-%s",                                  false},
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

char *write_binary(char *at, const BinaryForm *form, const mExpr *left, const mExpr *right) {
    const char *text = is_plain(form, left, right) ? form->plain : form->general;
    const char *first = form->swapped ? right->text : left->text;
    const char *second = form->swapped ? left->text : right->text;
    return write_form(at, text, {first, second});
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
    if (BracketDelimiter == IN_PARENTHESES) *at = write_text(*at, "(");
    return expr;
}

void finish_operator(char *at) {
    if (BracketDelimiter == IN_PARENTHESES) write_text(at, ")");
}

}  // namespace

mExpr *new_operator2(int id, const mExpr *left, const mExpr *right) {
    char *at;
    size_t size = strlen(left->text) + strlen(right->text) + 60;
    mExpr *expr = new_operator(id, size, left->scalar && right->scalar, &at);
    if (id == OP_ASSIGN) {
        at = write_assignment(at, left->text, right->text);
    } else if (const BinaryForm *form = find_form(id)) {
        at = write_binary(at, form, left, right);
    } else {
        printf("id %d unexpected\n", id);
        return expr;
    }
    finish_operator(at);
    return expr;
}

mExpr *new_operator1(int id, const mExpr *operand) {
    char *at;
    mExpr *expr = new_operator(id, strlen(operand->text) + 50, operand->scalar, &at);
    finish_operator(write_unary(at, id, operand->text));
    return expr;
}
