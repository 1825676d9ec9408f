// Writing whole procedures.
#include "emit/procedures.h"

#include <stdio.h>

#include "emit/comments.h"
#include "emit/globals.h"
#include "emit/output.h"
#include "emit/statement_writer.h"
#include "run/run_state.h"
#include "support/string_hash.h"

static void note_variables(const vExpr *names) {
    for (; names; names = names->next) add_name(KnownVariables, names->item->text);
}

static void write_uses() {
    if (UsesArrayTools && UsesLinearAlgebra) {
        write_output("    uses ArrayTools, LinearAlgebra;\n");
    } else if (UsesArrayTools) {
        write_output("    uses ArrayTools;\n");
    } else if (UsesLinearAlgebra) {
        write_output("    uses LinearAlgebra;\n");
    }
}

void proc_header(const char *name, const vExpr *outputs, const vExpr *params) {
    note_variables(params);
    write_output({name, " := proc( "});
    write_list(params, nullptr);
    write_output(" )\n");
    write_uses();
    note_variables(outputs);
    if (outputs) write_output("    local ");
    write_list(outputs, nullptr);
    write_output(";\n");  // hosts know the lone one where there are no outputs
}

void proc_body(mStat *body, const vExpr *trailing) {
    write_globals();
    drop_globals();
    display_statement(body, 1);
    write_comments(trailing, 1);
}

static void write_return_of(const vExpr *outputs, const vExpr *end) {
    write_output("return ");
    write_list(outputs, end);
    write_output(";\n");
}

// A branch for every number of results from 2 on, then one for a single result.
static void write_return_branches(const vExpr *outputs, int level) {
    int results = 2;
    for (const vExpr *last = outputs->next; last; last = last->next, results++) {
        char test[40];
        snprintf(test, sizeof test, " _nresults = %d then\n", results);
        if (results > 2) write_indent(level);
        write_output({results > 2 ? "elif" : "if", test});
        write_indent(level + 1);
        write_return_of(outputs, last->next);
    }
    write_indent(level);
    write_output("else\n");
    write_indent(level + 1);
    write_return_of(outputs, outputs->next);
    write_indent(level);
    write_output("end if;\n");
}

void proc_return(const vExpr *outputs, int level) {
    if (!outputs) return;
    if (outputs->next) {
        write_return_branches(outputs, level);
    } else {
        write_output("    ");  // hosts know these four blanks more, at every level
        write_return_of(outputs, nullptr);
    }
}

void declare_proc(mProc *proc, const vExpr *trailing) {
    mProc *outer = CurrentProc;
    CurrentProc = proc;
    proc_header(proc->name, proc->outputs, proc->params);
    proc_body(proc->body, trailing);
    write_indent(1);  // without outputs this stands before end proc, and hosts know it there
    proc_return(proc->outputs, 1);
    write_output("end proc;\n\n");
    StringHashInsert(DefinedNames, proc->name, const_cast<char *>(proc->name));
    CurrentProc = outer;
    free_vExpr(proc->outputs);
    free_vExpr(proc->params);
}
