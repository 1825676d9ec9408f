// Statement records.
#include "emit/statements.h"

#include <assert.h>

#include "support/allocation.h"

mStat *alloc_mStat(int kind) {
    mStat *stat = AllocRecord<mStat>();
    *stat = {kind, nullptr, nullptr, nullptr};
    return stat;
}

mIf *alloc_mIf() { return AllocRecord<mIf>(); }
mFor *alloc_mFor() { return AllocRecord<mFor>(); }
mWhile *alloc_mWhile() { return AllocRecord<mWhile>(); }
mReturn *alloc_mReturn() { return AllocRecord<mReturn>(); }

mSwitch *alloc_mSwitch() {
    mSwitch *record = AllocRecord<mSwitch>();
    record->subject = nullptr;
    record->condition_name = nullptr;
    record->is_first = 0;
    return record;
}

mProc *alloc_mProc(const char *name, vExpr *outputs, vExpr *params) {
    mProc *proc = AllocRecord<mProc>();
    *proc = {name, outputs, params, nullptr};
    return proc;
}

static mStat *new_stat(int kind, void *payload) {
    mStat *stat = alloc_mStat(kind);
    stat->payload = payload;
    return stat;
}

mStat *new_expression_stat(mExpr *expr) { return new_stat(STAT_EXPR, expr); }

mStat *new_for_stat(mExpr *variable, mExpr *range, mStat *body) {
    mFor *record = alloc_mFor();
    *record = {body, variable, range};
    return new_stat(STAT_FOR, record);
}

mStat *new_if_stat(mExpr *condition, mStat *then_body, mStat *else_part, int is_elseif) {
    mIf *record = alloc_mIf();
    *record = {then_body, else_part, condition, is_elseif};
    return new_stat(STAT_IF, record);
}

mStat *new_switch_stat(mExpr *subject, vExpr *comments, mStat *first_clause) {
    mSwitch *record = alloc_mSwitch();
    record->subject = subject;
    record->next_clause = first_clause;
    return comment_body(new_stat(STAT_SWITCH, record), comments);
}

mStat *new_case_clause(vExpr *values, mStat *body, mStat *next_clause) {
    mSwitch *record = alloc_mSwitch();
    record->values = values;
    record->body = body;
    record->next_clause = next_clause;
    return new_stat(STAT_SWITCH, record);
}

mStat *new_while_stat(mExpr *condition, mStat *body) {
    mWhile *record = alloc_mWhile();
    *record = {body, condition};
    return new_stat(STAT_WHILE, record);
}

mStat *new_return_stat() { return new_stat(STAT_RETURN, alloc_mReturn()); }

mStat *link_statements(mStat *stat, vExpr *comments, mStat *rest) {
    assert(stat && rest);
    stat->next = rest;
    rest->comments = comments;
    return stat;
}

mStat *comment_body(mStat *body, vExpr *comments) {
    if (body) body->comments = comments;
    return body;
}
