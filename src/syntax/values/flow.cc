// The flow of values.
#include "syntax/values/flow.h"

#include "support/allocation.h"

struct Change {
    Symbol *symbol;
    Change *before;
    Value value;  // before the change
};

/* What becomes of a variable in branches or in a region. */
struct Outcome {
    Symbol *symbol;
    Outcome *next;
    Value value;    // at the end of branches; at the start of a round of a region
    Value left;     // at the end of the round
    bool is_known;  // value has been set
    int32_t ends;   // branches that end with a value of its own: how many, and which one last
    int32_t branch;
};

namespace {

Change *LastChange;
Change *FreeChanges;
bool IsDead;
bool IsGivenUp;
int OpenRegions;
uint32_t Trace;  // number of the function being traced, in the process

constexpr uint32_t UNTRACED =
    SYMBOL_GLOBAL | SYMBOL_PERSISTENT | SYMBOL_SHARED | SYMBOL_IN_SCRIPT | SYMBOL_UNTRACED;
constexpr int MOST_ROUNDS = 6;

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
    change->symbol->now = change->value;
    LastChange = change->before;
    change->before = FreeChanges;
    FreeChanges = change;
}

// The symbol's outcome in the list that is worked on.
Outcome *outcome_of(Symbol *symbol, Outcome **list) {
    if (symbol->outcome) return symbol->outcome;
    Outcome *outcome = AllocRecord<Outcome>();
    *outcome = {symbol, *list, 0, 0, false, 0, 0};
    *list = symbol->outcome = outcome;
    return outcome;
}

void enter_outcomes(Outcome *list) {
    for (; list; list = list->next) list->symbol->outcome = list;
}

void leave_outcomes(const Outcome *list) {
    for (; list; list = list->next) list->symbol->outcome = nullptr;
}

}  // namespace

void begin_flow() {
    LastChange = FreeChanges = nullptr;
    IsDead = IsGivenUp = false;
    OpenRegions = 0;
    Trace++;
}

void give_up_flow() { IsGivenUp = true; }

bool is_traced(const Symbol *symbol) { return !IsGivenUp && !(symbol->flags & UNTRACED); }

Value value_now(const Symbol *symbol) {
    return is_traced(symbol) ? symbol->now : Value(ANY_VALUE | MAY_BE_MISSING);
}

void set_value(Symbol *symbol, Value value) {
    symbol->ever |= value;
    // A region must know of a change that another one takes back, or that a jump leaves behind.
    if (!is_traced(symbol) || (symbol->now == value && OpenRegions == 0)) return;
    symbol->since = OpenRegions ? Value(symbol->since | symbol->now | value) : value;
    note_change(symbol);
    symbol->now = value;
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
        outcome_of(change->symbol, &branches->first);
}

// The first change met is the last one made: the symbol has what it was changed to.
void keep_outcome(Branches *branches, Symbol *symbol) {
    Outcome *outcome = outcome_of(symbol, &branches->first);
    if (outcome->branch == branches->ends) return;
    outcome->branch = branches->ends;
    outcome->value |= symbol->now;
    outcome->ends++;
}

}  // namespace

void end_branch(Branches *branches, Mark since) {
    enter_outcomes(branches->first);
    if (IsDead) {
        if (OpenRegions > 0) keep_changes(branches);
    } else {
        branches->ends++;
        for (const Change *change = LastChange; change != branches->start; change = change->before)
            keep_outcome(branches, change->symbol);
    }
    leave_outcomes(branches->first);
    undo_flow(since);
    IsDead = branches->was_dead;
}

void join_branches(Branches *branches) {
    undo_flow(branches->start);
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
    OpenRegions++;
    for (Outcome *outcome = region->first; outcome; outcome = outcome->next) begin_round(outcome);
    return region;
}

void note_end(Region *region, bool anywhere) {
    enter_outcomes(region->first);
    for (const Change *change = LastChange; change != region->start; change = change->before) {
        Symbol *symbol = change->symbol;
        Outcome *outcome = outcome_of(symbol, &region->first);
        if (!IsDead) outcome->left |= symbol->now;
        if (anywhere) outcome->left |= symbol->since;
    }
    leave_outcomes(region->first);
    undo_flow(region->start);
    IsDead = region->was_dead;
}

void note_changes(Region *region) {
    enter_outcomes(region->first);
    for (const Change *change = LastChange; change != region->start; change = change->before) {
        Outcome *outcome = outcome_of(change->symbol, &region->first);
        outcome->value |= change->value;
        outcome->is_known = true;
    }
    leave_outcomes(region->first);
}

bool begins_again(Region *region) {
    bool is_wider = false;
    for (Outcome *outcome = region->first; outcome; outcome = outcome->next)
        is_wider |= begin_round(outcome);
    if (!is_wider) return false;
    if (++region->rounds < MOST_ROUNDS) return true;
    for (Outcome *outcome = region->first; outcome; outcome = outcome->next)
        set_value(outcome->symbol, outcome->value = ANY_VALUE | MAY_BE_MISSING);
    return true;
}

void end_region(const Region *region, bool anywhere) {
    OpenRegions--;
    for (const Outcome *outcome = region->first; outcome; outcome = outcome->next) {
        Value left = anywhere ? outcome->symbol->since : 0;
        set_value(outcome->symbol, outcome->value | left);
    }
}
