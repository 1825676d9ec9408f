/* Procedures: functions of the source with their heads, declarations and returns. */
#pragma once

#include "lower/lines/lines.h"
#include "lower/procedures/preludes.h"
#include "lower/program/called_functions.h"

/* Start of a run: nothing is being lowered. */
void begin_procedures();
/* Lowers a function of the current file into lines: the comments above it, from the node comments
 * on (the function for none), its procedure, and an empty line. */
void lower_function(const FileFunction *function, const Node *comments, Lines *lines);

/* A persistent declaration: its names are made in front of the procedure. */
void lower_persistent(const Node *declaration);
/* What the host calls varargout, of a function that has it. */
const char *varargout_name(const Scope *scope);
/* Where the return of the function that is being lowered is long, puts a procedure of its own that
 * gives the results, for all returns. */
void put_results_procedure();
/* Puts the return of the results of the function that is being lowered. end: a RETURN of the
 * source, after which nothing runs; else the BLOCK of its body, which ends. */
void put_return(const Node *end);

/* The return that a body or a script ends with; null when there is none. */
const Node *last_return(const Node *body);

/* The first of the comments that belong to a function: those between it and whatever stands before
 * it. The function itself when there are none. first: of its siblings. */
const Node *comments_above(const Node *first, const Node *function);
/* Puts the statements and comments from first on that belong to no function. */
void put_pieces(const Node *first);
/* What follows a function or statement and the comments on the line of its end; null for nothing.
 */
const Node *after_trailing_comments(const Node *node);
