/* Calls that the front end makes up for what the host's forms lack. */
#pragma once

#include <initializer_list>

#include "translate/expressions.h"

/* A list of expressions, at first {}. */
struct ExprList {
    vExpr *first;
    vExpr *last;
};
void append_expr(ExprList *list, mExpr *expr);

/* The texts of a list, separated by ", ", between two others, as a kept text. */
const char *exprs_text(const vExpr *list, const char *before = "", const char *after = "");

/* What the host answers for a call that is to give so many results, or null; further lines are
 * indented like the statement. */
mExpr *ask_host(const char *name, const vExpr *arguments, int32_t results = 1);
/* What the host answers for a call of the keyword, else the call itself. The cells of the list
 * stay the caller's. */
mExpr *new_keyword_call(const char *keyword, const vExpr *arguments);
mExpr *new_keyword_call(const char *keyword, std::initializer_list<const char *> arguments);
/* What the host answers, its lines as they are, or null. */
const char *ask_keyword(const char *keyword, std::initializer_list<const char *> arguments);
