/* How the values of variables flow through the statements of a function. The value of each is kept
 * in its symbol; changes are noted, so that branches begin with the same values and their ends are
 * joined, at a cost of what they change. */
#pragma once

#include "syntax/names/names.h"
#include "syntax/tree/value.h"

struct Change;

/* Where in the noted changes something began. */
typedef const Change *Mark;

/* Forgets all changes; nothing is dead. */
void begin_flow();
/* No variable is traced from here on, in the whole function; so it is where regions are nested too
 * deep, too. */
void give_up_flow();
/* Whether that has happened. */
extern bool FlowIsGivenUp;
inline bool is_given_up() { return FlowIsGivenUp; }
/* Whether the variable's values are traced: nobody else can change them. */
bool is_traced(const Symbol *symbol);
/* Whether it is one that outlives calls (values/held_values.h): its value does not flow. What it
 * holds is all that it has been given. */
bool is_held(const Symbol *symbol);
/* Whether a persistent one has been given more since begin_flow. */
bool has_held_more();
/* The value of a variable where the flow is now, if that is traced or held. */
inline Value value_now(const Symbol *symbol) {
    bool is_followed = !(symbol->flags & (SYMBOL_SHARED | SYMBOL_IN_SCRIPT)) && !FlowIsGivenUp;
    return is_followed ? symbol->now : Value(ANY_VALUE | MAY_BE_MISSING);
}
/* The variable has another value from here on; nothing happens to one that is not traced. */
void set_value(Symbol *symbol, Value value);
/* A variable that nobody has met so far has this value here, while at the starts of the regions
 * around nothing is known of it: their rounds that are under way are traced again. */
void start_late(Symbol *symbol, Value value);
/* Nothing comes here: an error, a return or a jump leaves what is around. */
void end_here();
bool is_dead();
/* The flow goes on here, or not, whatever has been. */
void set_dead(bool is_dead);
/* Whether a region is open: what stands later in the text may have run before. */
bool is_in_region();
Mark mark_flow();
/* The values of start hold again. */
void undo_flow(Mark start);

/* Branches of which one is taken. */
struct Branches {
    Mark start;
    Outcome *first; /* of each variable that one of them changes */
    int ends;       /* branches whose end is reached, so far */
    bool was_dead;
};

void begin_branches(Branches *branches);
/* A branch, begun at begin_branches or at the end of the one before, is over: its values are kept,
 * and those at since hold again, between the start and here. */
void end_branch(Branches *branches, Mark since);
/* All branches are over: one of them was taken. */
void join_branches(Branches *branches);

/* A loop, or another region that may be left or begun anew at any place. It is kept with its node,
 * FOR, WHILE, DO_UNTIL, TRY or UNWIND: when a region around it is traced again, it goes on with
 * what it knows, so that nested loops are traced a few times each. */
struct Region {
    Mark start;
    Outcome *first; /* of each variable that it changes */
    int rounds;     /* after which its start knew less */
    bool was_dead;
    bool is_given_up;     /* no variable has been traced since the round began */
    uint32_t trace;       /* in which it has been made */
    uint32_t late_starts; /* so far where the round began */
};

/* The start of a first round. */
Region *begin_region(Node *node);
/* The end of a round; anywhere: or a jump to the next one, from any place. The values are then
 * those before the region. */
void note_end(Region *region, bool anywhere);
/* Notes which variables the region has changed, where it is not begun again. */
void note_changes(Region *region);
/* After note_end: the start of another round, with the values of its start. Answers whether it is
 * to be traced, as they may be more than before. */
bool begins_again(Region *region);
/* The flow goes on from any place of the region, whose changes have been noted. */
void go_on_anywhere(const Region *region);
/* The region is over, and so are all branches and regions begun in it. */
void leave_region(const Region *region);
/* The region is over, too; its values are those of the start of a round, and anywhere: of any
 * place. */
void end_region(const Region *region, bool anywhere);
