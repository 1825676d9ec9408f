// Writing switch statements.
#include "emit/switch_writer.h"

#include <assert.h>
#include <stdio.h>

#include "emit/output.h"
#include "emit/statement_writer.h"
#include "support/allocation.h"

int32_t SwitchCounter;

// A switch statement that begins an otherwise branch has a subject and is no clause.
static mSwitch *as_clause(const mStat *stat) {
    if (stat->kind != STAT_SWITCH) return nullptr;
    mSwitch *record = static_cast<mSwitch *>(stat->payload);
    return record->subject ? nullptr : record;
}

static const char *next_condition_name() {
    char name[32];
    snprintf(name, sizeof name, "switch_condition%d", SwitchCounter++);
    return StrDup(name);
}

static void write_clauses(const mSwitch *head, int level) {
    mStat *first = head->next_clause;
    if (mSwitch *clause = as_clause(first)) {
        clause->is_first = 1;
        clause->condition_name = head->condition_name;
        display_statement(first, level);
    } else {  // only an otherwise branch
        write_indent(level);
        write_output("if true then\n");
        display_statement(first, level + 1);
    }
    write_indent(level);
    write_output("end if;\n");
}

static void write_head(mSwitch *head, int level) {
    head->condition_name = next_condition_name();
    write_output({head->condition_name, " := ", head->subject->text, ";\n"});
    if (head->next_clause) write_clauses(head, level);
}

static void write_values(const mSwitch *clause) {
    const vExpr *values = clause->values;
    assert(values && clause->condition_name);
    if (values->next) {
        write_output({clause->condition_name, " in { "});
        write_list(values, nullptr);
        write_output("}\n");  // hosts know the line end before the then
    } else {
        write_output({clause->condition_name, " = ", values->item->text});
    }
}

static void write_clause(const mSwitch *clause, int level) {
    write_output(clause->is_first ? "if " : "elif ");
    write_values(clause);
    write_output(" then\n");
    display_statement(clause->body, level + 1);
    mStat *next = clause->next_clause;
    if (!next) return;
    if (mSwitch *next_clause = as_clause(next)) {
        next_clause->condition_name = clause->condition_name;
        display_statement(next, level);
    } else {
        write_indent(level);
        write_output("else\n");
        display_statement(next, level + 1);
    }
}

void write_switch(mSwitch *record, int level) {
    if (record->subject) {
        write_head(record, level);
    } else {
        write_clause(record, level);
    }
}
