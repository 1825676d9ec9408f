// Whose turn it is, and where a run that is given up goes.
#include "run/run_turn.h"

#include <unwind.h>

#include <mutex>
#include <thread>

#include "run/run_end.h"

namespace {

enum Phase { NOBODY, RUNNING, RAISING };

struct TurnState {
    Phase phase;
    uint64_t number;  // of the turn taken last
    RunTurn *turn;    // null for NOBODY
    std::thread::id thread;
};

TurnState State;
std::mutex Lock;  // of State; held for no call

TurnState current_state() {
    std::lock_guard guard(Lock);
    return State;
}

enum Found { ON_STACK, GONE, UNKNOWN };

struct StackSearch {
    uintptr_t turn;
    Found found;
};

#ifndef __wasm__
_Unwind_Reason_Code look_at_frame(_Unwind_Context *context, void *datum) {
    StackSearch *search = static_cast<StackSearch *>(datum);
    if (_Unwind_GetRegionStart(context) == reinterpret_cast<uintptr_t>(run_to_end)) {
        search->found = ON_STACK;
    } else if (_Unwind_GetCFA(context) > search->turn) {
        search->found = GONE;
    }
    return search->found == UNKNOWN ? _URC_NO_REASON : _URC_NORMAL_STOP;
}

// Whether a run is under way on this thread's stack, on the way up to the turn. A frame that cannot
// be unwound ends the search before.
Found search_stack(const RunTurn *turn) {
    StackSearch search = {reinterpret_cast<uintptr_t>(turn), UNKNOWN};
    _Unwind_Backtrace(look_at_frame, &search);
    return search.found;
}
#else
// A program cannot look at its stack there.
Found search_stack(const RunTurn *) { return UNKNOWN; }
#endif

bool is_left(const TurnState *state) {
    if (state->phase == NOBODY) return true;
    bool may_be_left = state->phase == RAISING;
    if (state->thread != std::this_thread::get_id()) return may_be_left;
    Found found = search_stack(state->turn);
    return found == UNKNOWN ? may_be_left : found == GONE;
}

// Takes the turn if it is still where it was seen.
bool claim(const TurnState *seen, RunTurn *turn) {
    std::lock_guard guard(Lock);
    if (State.number != seen->number || State.phase != seen->phase) return false;
    turn->number = seen->number + 1;
    State = {RUNNING, turn->number, turn, std::this_thread::get_id()};
    return true;
}

// Goes on with the turn if nobody has taken another.
bool resume(const RunTurn *turn) {
    std::lock_guard guard(Lock);
    if (State.turn != turn || State.number != turn->number) return false;
    State.phase = RUNNING;
    return true;
}

}  // namespace

bool take_turn(RunTurn *turn) {
    for (;;) {
        TurnState seen = current_state();
        if (!is_left(&seen)) return false;
        if (claim(&seen, turn)) return true;
    }
}

bool has_turn(const RunTurn *turn) { return current_state().number == turn->number; }

void end_turn(const RunTurn *turn) {
    std::lock_guard guard(Lock);
    if (State.number == turn->number) State = {NOBODY, turn->number, nullptr, {}};
}

RunTurn *begin_raise() {
    std::lock_guard guard(Lock);
    if (State.phase == RUNNING) State.phase = RAISING;
    return State.turn;
}

void end_raise(RunTurn *turn) {
    if (turn && !resume(turn)) longjmp(turn->exit, 1);
}

// Never inlined: search_stack looks for its frame.
__attribute__((noinline)) uintptr_t run_to_end(RunTurn *turn, uintptr_t (*body)(uintptr_t),
                                               uintptr_t argument) {
    if (setjmp(turn->exit)) return 0;
    return body(argument);
}

void abandon_run() { longjmp(State.turn->exit, 1); }
