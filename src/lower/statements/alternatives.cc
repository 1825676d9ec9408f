// Short blocks with a copy for each side of a condition.
#include "lower/statements/alternatives.h"

#include <assert.h>

#include "lower/conditions/condition_sides.h"
#include "lower/expressions/expressions.h"
#include "lower/lines/gaps.h"
#include "lower/lines/lines.h"
#include "lower/program/context.h"
#include "lower/statements/statements.h"

namespace {

constexpr int MOST_COPIES = 4;
constexpr int MOST_ELSES = 3;

// Of a statement that is repeated.
constexpr int MOST_NODES = 20;

bool is_any_of(const Node *condition, bool is_true) {
    return needs_branches(condition) && is_and(condition) != is_true;
}

// How many tests there are, as far as it matters; too many where one of them, the last of all left
// out, needs branches of its own.
int count_alternatives(const Node *node, bool is_true, bool is_last) {
    node = without_parens(node);
    if (is_negation(node)) return count_alternatives(node->first_child, !is_true, is_last);
    if (!needs_branches(node)) return 1;
    if (!is_any_of(node, is_true)) return is_last ? 1 : MOST_COPIES + 1;
    int count = 0;
    for (const Node *side = node->first_child; side && count <= MOST_COPIES; side = side->next)
        count += count_alternatives(side, is_true, is_last && !side->next);
    return count;
}

// How many nodes there are, as far as it matters.
int count_nodes(const Node *node, int most) {
    int count = 1;
    for (const Node *child = first_child(node); child && count <= most; child = child->next)
        count += count_nodes(child, most - count);
    return count;
}

bool is_simple(const Node *statement) {
    switch (statement->kind) {
        case NODE_EXPRESSION:
        case NODE_ASSIGN:
        case NODE_MULTI_ASSIGN: return count_nodes(statement, MOST_NODES) <= MOST_NODES;
        case NODE_BREAK:
        case NODE_CONTINUE: return true;
        case NODE_RETURN: return !Lowering.script.is_open;
        default: return false;
    }
}

bool is_simple_block(const Node *block) {
    const Node *statement = next_statement(block->first_child);
    return statement && !next_statement(statement->next) && is_simple(statement);
}

// Lines that have been put: those after the head.
struct Copied {
    Line *head;
    int level;
};

// Comments of the source stand in the output once; that something is given up is said as often as
// it would be done.
bool is_repeated(const Line *line) {
    bool is_comment = *line->text == '#' || !*line->text;
    return line->comment != NO_COMMENT || !is_comment || is_gap_line(line);
}

// Up to the line last.
Lines copy_lines(const Copied *copied, const Line *last, int level) {
    Lines lines = {};
    for (const Line *line = copied->head; line != last;) {
        line = line->next;
        if (is_repeated(line)) add_line_again(&lines, line->level + level - copied->level, line);
    }
    return lines;
}

// Where copies go, while the heads are put.
struct Alternatives {
    BranchWord word;  // of the next one
    int count;
    Copied places[MOST_COPIES];
};

void note_place(Alternatives *alternatives) {
    assert(alternatives->count < MOST_COPIES);
    alternatives->places[alternatives->count++] = {Lowering.lines->last, Lowering.level};
    alternatives->word = BRANCH_ELIF;
}

void put_all(Alternatives *alternatives, const Node *node, bool is_true);

void put_sides(Alternatives *alternatives, const Node *chain, bool is_true) {
    for (const Node *side = chain->first_child; side;) {
        if (needs_branches(side)) {
            put_all(alternatives, side, is_true);
            side = side->next;
        } else {
            BranchWord word = alternatives->word;
            TestApart apart = side_tests(chain, &side, is_true, false, word);
            put_branch_test(word, &apart);
            note_place(alternatives);
        }
    }
}

void put_all(Alternatives *alternatives, const Node *node, bool is_true) {
    node = without_parens(node);
    if (is_negation(node)) return put_all(alternatives, node->first_child, !is_true);
    if (is_any_of(node, is_true)) return put_sides(alternatives, node, is_true);
    open_branches(alternatives->word, node, is_true);
    note_place(alternatives);
}

void insert_lines(Line *after, Lines *lines) {
    if (!lines->first) return;
    lines->last->next = after->next;
    after->next = lines->first;
}

}  // namespace

bool may_be_alternatives(const Node *condition, const Node *block, bool is_last) {
    if (!is_simple_block(block)) return false;
    int count = count_alternatives(condition, true, is_last);
    return count > 1 && count <= MOST_COPIES;
}

// The block is lowered in the last place, after all that is asked before it.
void put_alternatives(BranchWord word, const Node *condition, const Node *block) {
    Alternatives alternatives = {};
    alternatives.word = word;
    put_all(&alternatives, condition, true);
    if (Lowering.gap != MESSAGE_COUNT) return;
    const Copied *last = &alternatives.places[alternatives.count - 1];
    lower_block(block);
    for (const Copied *place = alternatives.places; place != last; place++) {
        Lines copies = copy_lines(last, Lowering.lines->last, place->level);
        insert_lines(place->head, &copies);
    }
}

// What must all be true has an alternative for each that is not.
bool may_have_each_else(const Node *condition, const Node *block) {
    if (!is_simple_block(block)) return false;
    int count = count_alternatives(condition, false, false);
    return count > 1 && count <= MOST_ELSES;
}

void put_each_else(const Node *block, int outermost) {
    put_line("else", {});
    Copied first = {Lowering.lines->last, Lowering.level};
    lower_block(block);
    const Line *last = Lowering.lines->last;
    while (Lowering.level > outermost) {
        put_line("end if;", {});
        Lowering.level--;
        put_line("else", {});
        Lines copies = copy_lines(&first, last, Lowering.level);
        append_lines(Lowering.lines, &copies);
    }
}
