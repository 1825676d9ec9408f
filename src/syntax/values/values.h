/* What is known of the values of expressions and variables, from the text of the function alone:
 * whatever is not plain is taken to be unknown. Names must have been settled. */
#pragma once

#include "syntax/names/assigned_values.h"
#include "syntax/tree/value.h"

/* Whether the value is a number that is surely not below 0; several numbers, each of them. */
bool is_never_negative(const Node *expression);
/* Whether its numbers are surely whole. */
bool is_surely_whole(const Node *expression);
/* Of a value of an integer class, as int8(3) + 1 and the variables that hold such ones are, the
 * NAME of the function that makes it one; null where nothing shows a class. */
const Node *integer_class(const Node *expression);
/* Whether the value is surely a single one. */
bool is_surely_single(const Node *expression);
/* Whether the value, as an index, surely selects several elements as far as the text can tell: a
 * range, a colon, a literal of several elements, a comparison, or a variable with such values. */
bool is_surely_several(const Node *expression);

/* Whether the selector after a base, or after another selector, may call a function that a variable
 * or a field holds. */
bool may_be_called(const Node *before);

/* Whether the variable, a NAME, holds a cell here. Where the ways to this place differ: braces are
 * used after it somewhere or a cell is assigned to it, and nothing that is surely none. */
bool is_cell_variable(const Node *name);
/* The same of what the last selector of a reference or target is applied to, where that is the
 * variable; a field of it, or of such a field, surely is a cell, and so is a literal one. */
bool is_cell_base(const Node *reference);
/* Whether x(k), which is used as a value, may be a part of a cell or an element of an array: what x
 * is, depends on the way to this place. Where nothing is known, it is taken for an element. */
bool may_give_cell(const Node *reference);
/* Whether the variable is a cell wherever it has a value. */
bool is_always_cell(const Symbol *symbol);
/* Whether the value is a cell, as far as the text can tell; false for what is surely none, and for
 * numbers, texts and arrays. Of a call or a parameter nobody knows: true. */
bool may_be_cell(const Node *expression);
/* What a cleared variable is made in the host, by what is selected of it: a cell, a struct or an
 * array without elements. */
Value cleared_value(const Symbol *symbol);
