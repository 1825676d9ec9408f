/* Lists of values: c{:}, c{2:end}, s(:).f, which stand for several arguments or elements. */
#pragma once

#include "lower/expressions/operands.h"
#include "syntax/tree/tree.h"

/* The selectors that make a list of a reference. */
struct ListEnd {
    const Node *index; /* in parentheses, in front of a field; null: the whole array */
    const Node *last;  /* the last one: a field or braces, where it is a list */
};
ListEnd list_end(const Node *reference);
/* Notes that a list of fields is read as one. */
void note_fields(const Node *node);

/* Whether the node is such a list. Alone in brackets the fields of a whole array, [s.f], and what
 * an index of unknown size selects, [c{k}], count too. */
bool is_value_list(const Node *node, bool is_alone);
/* Whether the argument of an index surely selects one element, or may select several. */
bool may_be_several(const Node *argument);

/* The list, wherever several values may stand. */
mExpr *lower_value_list(const Node *node);
/* The same, of values that are kept where they are put (shared_parts.h). */
mExpr *lower_kept_list(const Node *node);
/* Its first value, for a place of one. */
mExpr *lower_first_value(const Node *node);
/* As many values of it as there are targets. */
mExpr *lower_values_for(const Node *node, int targets);
