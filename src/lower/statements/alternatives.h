/* Short blocks that stand in the output more than once, so that no helper variable says where they
 * go: after each thing that a condition asks for,
 *
 *     if isempty(x) || x(1) < 0, x = 1; end
 *
 *     if isempty(x) then x := 1; elif x(1) < 0 then x := 1; end if;
 *
 * and in the else of each thing that it needs,
 *
 *     if ~isempty(x) && x(1) > 0, y = f(x); else, y = 0; end
 *
 *     if not isempty(x) then if x(1) > 0 then y := f(x); else y := 0; end if; else y := 0; end if;
 */
#pragma once

#include "lower/statements/branches.h"
#include "syntax/tree/tree.h"

/* Whether the condition asks for a few such things, and the block is one short statement, with
 * comments perhaps. is_last: nothing is done where the condition is false. */
bool may_be_alternatives(const Node *condition, const Node *block, bool is_last);
/* Puts both. The level may rise, by ifs that the caller closes. */
void put_alternatives(BranchWord word, const Node *condition, const Node *block);

/* Whether it needs a few, and the block of its else is such a statement. */
bool may_have_each_else(const Node *condition, const Node *block);
/* Puts the block in an else of each branch that is open, and closes those deeper than the
 * outermost. */
void put_each_else(const Node *block, int outermost);
