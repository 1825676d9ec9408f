// Writing statements: a walk over the records that maps each control structure to the host's.
#include "emit/statement_writer.h"

#include <stdio.h>
#include <string.h>

#include "emit/comments.h"
#include "emit/output.h"
#include "emit/procedures.h"
#include "emit/switch_writer.h"
#include "emit/waiting.h"
#include "lexer/error_reporter.h"
#include "lexer/position.h"
#include "run/run_state.h"
#include "support/allocation.h"
#include "translate/ranges.h"
#include "translate/text_forms.h"

int showString(const char *text) {
    printf("%s \n", text);
    return 1;
}

void write_condition(const char *condition) {
    write_output({"ArrayTools[AllNonZero](", condition, ")"});
}

static void write_expression(const mExpr *expr) {
    // The only word with a form of its own; break is the host's word too.
    if (strcmp(expr->text, "continue") == 0) {
        write_output("next;\n");
    } else {
        write_output({expr->text, ";\n"});
    }
}

// A range that ends with end, which only an index gives a meaning, has nothing to count to: an
// error at the place of the range.
static void report_open_range(const mFor *record) {
    const char *message =
        form_text("the range of the for loop over %s has no last value", {record->variable->text});
    SourcePosition reached = save_position();
    restore_position(record->range->range->open_at);
    yyerror(message);
    restore_position(&reached);
}

static void write_counted_head(const mFor *record) {
    const mRange *range = record->range->range;
    if (!range->stop) report_open_range(record);
    const char *last = upper_bound(range);
    write_output({"for ", record->variable->text, " from ", range->start->text, " to ", last});
    // Hosts know the second blank before do.
    if (!has_unit_step(range)) write_output({" by ", range->step->text, " "});
}

static void write_loop(mStat *body, int level, Walk *walk) {
    write_output(" do\n");
    wait_with_line(walk, "end do;\n", level);
    wait_with_list(walk, body, level + 1);
}

// The loop runs over the columns of a value.
static void write_column_head(const mFor *record, int level) {
    write_output({"qxrp_A := ", record->range->text, ";\n"});
    write_indent(level);
    write_output({"for ", record->variable->text,
                  " in seq(qxrp_A(..,qxrp_i),"
                  "qxrp_i=1..mul(qxrp_j,qxrp_j=ArrayTools:-Size(qxrp_A)(2..))) "});
}

static void write_for(const mFor *record, int level, Walk *walk) {
    if (is_range(record->range)) {
        write_counted_head(record);
    } else {
        write_column_head(record, level);
    }
    write_loop(record->body, level, walk);
}

static void write_while(const mWhile *record, int level, Walk *walk) {
    write_output("while ");
    write_condition(record->condition->text);
    write_loop(record->body, level, walk);
}

static bool is_elseif(const mStat *stat) {
    return stat->kind == STAT_IF &&
           static_cast<const mIf *>(stat->payload)->is_elseif == ELSEIF_BRANCH;
}

// The if that heads a chain closes it; an elseif branch only continues it.
static void write_if(const mIf *record, int level, Walk *walk) {
    write_output(record->is_elseif ? "elif " : "if ");
    write_condition(record->condition->text);
    write_output(" then\n");
    if (!record->is_elseif) wait_with_line(walk, "end if;\n", level);
    if (mStat *rest = record->else_part) {
        if (is_elseif(rest)) {
            wait_with_list(walk, rest, level);
        } else {
            wait_with_branch(walk, "else\n", rest, level);
        }
    }
    wait_with_list(walk, record->then_body, level + 1);
}

static void write_return(int level) {
    if (CurrentProc && CurrentProc->outputs) {
        proc_return(CurrentProc->outputs, level);
    } else {
        write_output("return;\n");
    }
}

static void write_statement(const mStat *stat, int level, Walk *walk) {
    switch (stat->kind) {
        case STAT_EXPR: return write_expression(static_cast<const mExpr *>(stat->payload));
        case STAT_FOR: return write_for(static_cast<const mFor *>(stat->payload), level, walk);
        case STAT_IF: return write_if(static_cast<const mIf *>(stat->payload), level, walk);
        case STAT_SWITCH: return write_switch(static_cast<mSwitch *>(stat->payload), level, walk);
        case STAT_WHILE:
            return write_while(static_cast<const mWhile *>(stat->payload), level, walk);
        case STAT_RETURN: return write_return(level);
        default: return;  // a global declaration stands in the procedure's global line
    }
}

void display_statement(mStat *first, int level) {
    Walk walk = {nullptr, nullptr};
    wait_with_list(&walk, first, level);
    while (const mStat *stat = next_statement(&walk, &level)) {
        write_comments(stat->comments, level);
        write_indent(level);  // of a global this is all, and hosts know what follows so far in
        write_statement(stat, level, &walk);
    }
}
