/* The names and values of a file's functions, settled before one of them is lowered: a call of a
 * function of the same file has the value that this one gives. */
#pragma once

#include "lower/program/program_files.h"
#include "syntax/names/names.h"

/* Settles and traces the functions of the current file. is_script: its statements may call them. */
void settle_functions(bool is_script);
/* The same of one function directly before it is lowered, where that has to wait: the scripts that
 * it calls belong to one function at a time. */
void settle_late(const FileFunction *function);
/* Settles and traces the statements of the current file, a script; answers their scope. */
Scope *settle_statements();
