// What waits to be written while a block is.
#include "emit/waiting.h"

#include "emit/output.h"
#include "support/allocation.h"

static void push(Walk *walk, const char *line, mStat *list, int level) {
    Waiting *waiting = walk->unused;
    if (waiting) {
        walk->unused = waiting->next;
    } else {
        waiting = AllocRecord<Waiting>();
    }
    *waiting = {line, list, level, walk->first};
    walk->first = waiting;
}

static void pop(Walk *walk) {
    Waiting *waiting = walk->first;
    walk->first = waiting->next;
    waiting->next = walk->unused;
    walk->unused = waiting;
}

void wait_with_line(Walk *walk, const char *line, int level) {
    push(walk, line, nullptr, level + 1);
}

void wait_with_list(Walk *walk, mStat *list, int level) {
    if (list) push(walk, nullptr, list, level);
}

void wait_with_branch(Walk *walk, const char *line, mStat *list, int level) {
    push(walk, line, list, level + 1);
}

mStat *next_statement(Walk *walk, int *level) {
    while (Waiting *waiting = walk->first) {
        if (waiting->line) {
            write_indent(waiting->level - 1);
            write_output(waiting->line);
            waiting->line = nullptr;
        }
        mStat *stat = waiting->list;
        *level = waiting->level;
        if (stat) waiting->list = stat->next;
        if (!waiting->list) pop(walk);
        if (stat) return stat;
    }
    return nullptr;
}
