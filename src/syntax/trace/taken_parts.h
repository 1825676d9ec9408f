/* Parts of parameters of which x(k) is taken for an element, though they may be cells: the
 * parameter itself, a field or an element of it, also where another variable has got that. Who
 * calls the function with a cell there is told. */
#pragma once

#include "syntax/values/field_values.h"

/* Of what holds it, the name of a part (field_values.h), and the way on inside of that. */
struct PartPath {
    const char *name;
    const PartPath *inner; /* null at its end */
};

struct TakenPart {
    int32_t position;     /* of the parameter, from 1; -n: any after the first n - 1 */
    const PartPath *path; /* null: the parameter itself */
    const TakenPart *next;
};

/* The value, which has been traced, is kept as it is: where it is x(k) of what a parameter may have
 * brought, and what may be anything, its element is taken. */
void note_taken(const Node *value);
/* What has been noted in TracedScope; what has been noted since is forgotten. */
const TakenPart *taken_so_far();
void forget_taken(const TakenPart *since);
/* The parts that a HANDLE's or ANONYMOUS's function takes; null for none. */
const TakenPart *taken_by_held(const Node *function);
/* Whether a cell is given at the position where an element is taken. */
bool gives_taken_cell(const TakenPart *taken, int32_t position, Value value,
                      const KnownParts *parts);
inline void set_gives_cell(Node *argument, bool gives) {
    argument->flags = gives ? argument->flags | GIVES_CELL : argument->flags & ~GIVES_CELL;
}
/* The arguments of a call of a NAME, which have been traced, first and siblings, null for none:
 * those that are cells where the function, or one among them, takes elements get the flag
 * GIVES_CELL. */
void note_given_cells(Node *name, Node *arguments);
