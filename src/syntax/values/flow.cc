// The flow of values.
#include "syntax/values/flow.h"

#include <assert.h>

#include "support/allocation.h"

struct Change {
    Symbol *symbol;
    Change *before;
    Value value;  // before the change
};

/* What becomes of a variable in branches or in a region. */
struct Outcome {
    Symbol *symbol;
    const void *owner;  // the Branches or the Region
    Outcome *outer;     // of the symbol, in what is around
    Outcome *next;
    Value value;    // at the end of branches; at the start of a round of a region
    Value left;     // at the end of the round
    bool is_known;  // value has been set
    int32_t ends;   // branches that end with a value of its own: how many, and which one last
    int32_t branch;
};

bool FlowIsGivenUp;

namespace {

Change *LastChange;
Change *FreeChanges;
bool IsDead;
bool HasHeldMore;
int OpenRegions;
uint32_t Trace;       // number of the function being traced, in the process
uint32_t LateStarts;  // of variables, in the function so far

constexpr uint32_t UNTRACED = SYMBOL_GLOBAL | SYMBOL_PERSISTENT | SYMBOL_SHARED | SYMBOL_IN_SCRIPT;
constexpr uint32_t HELD = SYMBOL_GLOBAL | SYMBOL_PERSISTENT;
constexpr int MOST_ROUNDS = 6;
// Each region is traced as often as there are regions around it, and a few times more.
constexpr int DEEPEST_REGION = 12;

void note_change(Symbol *symbol) {
    Change *change = FreeChanges;
    if (change) {
        FreeChanges = change->before;
    } else {
        change = AllocRecord<Change>();
    }
    *change = {symbol, LastChange, symbol->now};
    LastChange = change;
}

void undo_last() {
    Change *change = LastChange;
    assert(change && "a mark is one of the changes before here");
    change->symbol->now = change->value;
    LastChange = change->before;
    change->before = FreeChanges;
    FreeChanges = change;
}

void enter_outcome(Outcome *outcome) {
    outcome->outer = outcome->symbol->outcome;
    outcome->symbol->outcome = outcome;
}

[[gnu::noinline]] Outcome *new_outcome(Symbol *symbol, Outcome **list, const void *owner) {
    Outcome *outcome = AllocRecord<Outcome>();
    *outcome = {symbol, owner, nullptr, *list, 0, 0, false, 0, 0};
    *list = outcome;
    enter_outcome(outcome);
    return outcome;
}

// The symbol's outcome in the list of an owner, the innermost one that is open for the symbol.
Outcome *outcome_of(Symbol *symbol, Outcome **list, const void *owner) {
    bool has_one = symbol->outcome && symbol->outcome->owner == owner;
    return has_one ? symbol->outcome : new_outcome(symbol, list, owner);
}

void leave_outcomes(const Outcome *list) {
    for (; list; list = list->next) {
        assert(list->symbol->outcome == list);
        list->symbol->outcome = list->outer;
    }
}

}  // namespace

void begin_flow() {
    LastChange = FreeChanges = nullptr;
    IsDead = FlowIsGivenUp = HasHeldMore = false;
    OpenRegions = 0;
    LateStarts = 0;
    Trace++;
}

void give_up_flow() { FlowIsGivenUp = true; }

bool is_traced(const Symbol *symbol) { return !(symbol->flags & UNTRACED); }

[[gnu::noinline]] bool is_held(const Symbol *symbol) {
    return (symbol->flags & HELD) && !(symbol->flags & UNTRACED & ~HELD);
}

bool has_held_more() { return HasHeldMore; }

// A global keeps what it began with.
[[gnu::noinline]] static void hold_value(Symbol *symbol, Value value) {
    if (kinds_of(value) != ANY_KIND) symbol->given_kinds |= kinds_of(value);
    if ((symbol->flags & SYMBOL_GLOBAL) || is_within(value, symbol->now)) return;
    symbol->now |= value;
    HasHeldMore = true;
}

void set_value(Symbol *symbol, Value value) {
    symbol->ever |= value;
    // A region must know of a change that another one takes back, or that a jump leaves behind.
    if (!is_traced(symbol)) {
        if (is_held(symbol)) hold_value(symbol, value);
        return;
    }
    if (FlowIsGivenUp) return;
    if (symbol->now == value && OpenRegions == 0) return;
    symbol->since = OpenRegions ? Value(symbol->since | symbol->now | value) : value;
    note_change(symbol);
    symbol->now = value;
}

void start_late(Symbol *symbol, Value value) {
    set_value(symbol, value);
    LateStarts++;
}

void end_here() { IsDead = true; }

bool is_dead() { return IsDead; }

void set_dead(bool is_dead) { IsDead = is_dead; }

bool is_in_region() { return OpenRegions > 0; }

Mark mark_flow() { return LastChange; }

void undo_flow(Mark start) {
    while (LastChange != start) undo_last();
}

void begin_branches(Branches *branches) { *branches = {LastChange, nullptr, 0, IsDead}; }

namespace {

// A branch that is left in its middle gives no value to what follows, but has made changes that the
// regions around it must know.
void keep_changes(Branches *branches) {
    for (const Change *change = LastChange; change != branches->start; change = change->before)
        outcome_of(change->symbol, &branches->first, branches);
}

// The first change met is the last one made: the symbol has what it was changed to.
void keep_outcome(Branches *branches, Symbol *symbol) {
    Outcome *outcome = outcome_of(symbol, &branches->first, branches);
    if (outcome->branch == branches->ends) return;
    outcome->branch = branches->ends;
    outcome->value |= symbol->now;
    outcome->ends++;
}

}  // namespace

void end_branch(Branches *branches, Mark since) {
    if (IsDead) {
        if (OpenRegions > 0) keep_changes(branches);
    } else {
        branches->ends++;
        for (const Change *change = LastChange; change != branches->start; change = change->before)
            keep_outcome(branches, change->symbol);
    }
    undo_flow(since);
    IsDead = branches->was_dead;
}

void join_branches(Branches *branches) {
    undo_flow(branches->start);
    leave_outcomes(branches->first);
    for (Outcome *outcome = branches->first; outcome; outcome = outcome->next) {
        bool is_everywhere = outcome->ends > 0 && outcome->ends == branches->ends;
        Value before = is_everywhere ? 0 : outcome->symbol->now;
        set_value(outcome->symbol, outcome->value | before);
    }
    IsDead = branches->was_dead || branches->ends == 0;
}

// The variable begins the next round with what it has been at the start and the end of others.
// Answers whether that is more than before.
static bool begin_round(Outcome *outcome) {
    Symbol *symbol = outcome->symbol;
    Value before = outcome->is_known ? outcome->value : symbol->now;
    outcome->value = before | outcome->left | symbol->now;
    outcome->is_known = true;
    set_value(symbol, outcome->value);
    return outcome->value != before;
}

Region *begin_region(Node *node) {
    Region *region = node->region;
    if (!region || region->trace != Trace) {
        region = node->region = AllocRecord<Region>();
        *region = {};
        region->trace = Trace;
    }
    region->start = LastChange;
    region->was_dead = IsDead;
    if (++OpenRegions > DEEPEST_REGION) FlowIsGivenUp = true;
    region->is_given_up = FlowIsGivenUp;
    region->late_starts = LateStarts;
    for (Outcome *outcome = region->first; outcome; outcome = outcome->next) {
        enter_outcome(outcome);
        begin_round(outcome);
    }
    return region;
}

void note_end(Region *region, bool anywhere) {
    for (const Change *change = LastChange; change != region->start; change = change->before) {
        Symbol *symbol = change->symbol;
        Outcome *outcome = outcome_of(symbol, &region->first, region);
        if (!IsDead) outcome->left |= symbol->now;
        if (anywhere) outcome->left |= symbol->since;
    }
    undo_flow(region->start);
    IsDead = region->was_dead;
}

void note_changes(Region *region) {
    for (const Change *change = LastChange; change != region->start; change = change->before) {
        Outcome *outcome = outcome_of(change->symbol, &region->first, region);
        outcome->value |= change->value;
        outcome->is_known = true;
    }
}

bool begins_again(Region *region) {
    bool is_wider = region->late_starts != LateStarts;
    region->late_starts = LateStarts;
    for (Outcome *outcome = region->first; outcome; outcome = outcome->next)
        is_wider |= begin_round(outcome);
    if (FlowIsGivenUp != region->is_given_up) return region->is_given_up = true;
    if (!is_wider) return false;
    if (++region->rounds < MOST_ROUNDS) return true;
    for (Outcome *outcome = region->first; outcome; outcome = outcome->next)
        set_value(outcome->symbol, outcome->value = ANY_VALUE | MAY_BE_MISSING);
    return true;
}

void go_on_anywhere(const Region *region) {
    for (const Outcome *outcome = region->first; outcome; outcome = outcome->next)
        set_value(outcome->symbol, outcome->value | outcome->symbol->since);
}

void leave_region(const Region *region) {
    assert(OpenRegions > 0);
    OpenRegions--;
    leave_outcomes(region->first);
}

void end_region(const Region *region, bool anywhere) {
    if (anywhere) {
        go_on_anywhere(region);
    } else {
        for (const Outcome *outcome = region->first; outcome; outcome = outcome->next)
            set_value(outcome->symbol, outcome->value);
    }
    leave_region(region);
}
