/* Whose turn it is: all state is process-wide, so one call of the library at a time works on it. */
#pragma once

#include <setjmp.h>
#include <stdint.h>

/* A call that has the turn. Lies in the frame of the call. */
struct RunTurn {
    uint64_t number;
    jmp_buf exit; /* run_to_end's */
};

/* Takes the turn; false while another call has it, on this thread further up the stack or on
 * another thread. A call that its host has left has it no longer: on its own thread because its
 * frame is gone, for other threads if it was in RaiseError, as it mostly does not return. */
bool take_turn(RunTurn *turn);
/* Whether the turn is still this one's: a run may have lost it in RaiseError. */
bool has_turn(const RunTurn *turn);
/* Gives the turn back, or does nothing if it has been lost. */
void end_turn(const RunTurn *turn);

/* Around RaiseError, which can be left: afterwards the turn is anybody's, until end_raise takes it
 * up again. If another call has had it in between, nothing of the run is left and end_raise leaves
 * for run_to_end. */
RunTurn *begin_raise();
void end_raise(RunTurn *turn);

/* Runs body(argument), or answers 0 in its place when the run is given up in it. */
uintptr_t run_to_end(RunTurn *turn, uintptr_t (*body)(uintptr_t), uintptr_t argument);
