// Writing switch statements.
#include "emit/switch_writer.h"

#include <assert.h>
#include <stdio.h>

#include "emit/output.h"
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

static void write_clauses(const mSwitch *head, int level, Walk *walk) {
    mStat *first = head->next_clause;
    wait_with_line(walk, "end if;\n", level);
    if (mSwitch *clause = as_clause(first)) {
        clause->is_first = 1;
        clause->condition_name = head->condition_name;
        wait_with_list(walk, first, level);
    } else {  // only an otherwise branch
        wait_with_branch(walk, "if true then\n", first, level);
    }
}

static void write_head(mSwitch *head, int level, Walk *walk) {
    head->condition_name = next_condition_name();
    write_output({head->condition_name, " := ", head->subject->text, ";\n"});
    if (head->next_clause) write_clauses(head, level, walk);
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

static void write_clause(const mSwitch *clause, int level, Walk *walk) {
    write_output(clause->is_first ? "if " : "elif ");
    write_values(clause);
    write_output(" then\n");
    if (mStat *next = clause->next_clause) {
        if (mSwitch *next_clause = as_clause(next)) {
            next_clause->condition_name = clause->condition_name;
            wait_with_list(walk, next, level);
        } else {
            wait_with_branch(walk, "else\n", next, level);
        }
    }
    wait_with_list(walk, clause->body, level + 1);
}

void write_switch(mSwitch *record, int level, Walk *walk) {
    if (record->subject) {
        write_head(record, level, walk);
    } else {
        write_clause(record, level, walk);
    }
}
