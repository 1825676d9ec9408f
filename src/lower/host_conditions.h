/* Tests of counts that the front end makes up: of arguments, of results. */
#pragma once

#include "translate/operators.h"

/* left (a host name or form) compared with a number, op of Operator: as a value. */
mExpr *count_comparison(const char *left, int op, int number);
/* The same as the host's condition, behind if or elif. */
const char *count_condition(const char *left, int op, int number);
/* The digits of a number, as a kept text. */
const char *number_text(int number);
