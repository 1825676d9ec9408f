/* Writing whole procedures and scripts. */
#pragma once

#include "emit/statements.h"

/* Writes a complete function as a host procedure and enters its name in DefinedNames. trailing:
 * comments after its last statement, null for none. Releases the cells of outputs and params. */
void declare_proc(mProc *proc, const vExpr *trailing);
/* Header, packages and locals; parameters and outputs become known variables. */
void proc_header(const char *name, const vExpr *outputs, const vExpr *params);
/* Globals (which are then forgotten), statements and the comments after them. */
void proc_body(mStat *body, const vExpr *trailing);
/* The return of as many results as the caller asked for; nothing without outputs. The first line's
 * indentation is the caller's. */
void proc_return(const vExpr *outputs, int level);

/* Writes a script, null for one without statements: the packages of a script file, the statements
 * and the comments after them. */
void write_script(mStat *first, const vExpr *trailing);
