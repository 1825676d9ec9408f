/* Functions that variables hold. Where a variable is only ever called, and nobody else can, what
 * its calls give is what the parameters of its functions are: the function around is traced again
 * with that. */
#pragma once

#include "syntax/trace/trace.h"

/* The trace of a function begins; is_again: with what the calls of the trace before have told. */
void begin_handles(bool is_again);
/* Brings what they have told to the parameters; answers whether that is something. */
bool tell_handles();
/* What is given is forgotten. */
void end_handles();
/* The variable, which holds a function, is called with these arguments, first and siblings; null
 * for none. */
void note_handle_call(Symbol *variable, const Node *arguments);
/* What a parameter of an anonymous function is given; ANY_VALUE where that is not known. */
Value value_given_to(const Symbol *parameter);
/* What a function gives: an ANONYMOUS whose body has been traced, or a HANDLE. */
Value value_of_function(const Node *function);
const KnownParts *parts_of_function(const Node *function);
