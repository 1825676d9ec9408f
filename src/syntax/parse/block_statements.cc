// Statements that hold blocks. A block with an error in its head, or without its end, becomes a
// NODE_BAD with what could be read as its children.
#include <assert.h>

#include "syntax/parse/expressions.h"
#include "syntax/parse/open_blocks.h"
#include "syntax/parse/recovery.h"
#include "syntax/parse/statements.h"
#include "syntax/scan/class_table.h"

namespace {

constexpr uint64_t END_OF_IF = closer(TOKEN_END) | closer(TOKEN_END_IF);
constexpr uint64_t BRANCHES_OF_IF = END_OF_IF | closer(TOKEN_ELSEIF) | closer(TOKEN_ELSE);
constexpr uint64_t END_OF_SWITCH = closer(TOKEN_END) | closer(TOKEN_END_SWITCH);
constexpr uint64_t CASES = END_OF_SWITCH | closer(TOKEN_CASE) | closer(TOKEN_OTHERWISE);
constexpr uint64_t END_OF_TRY = closer(TOKEN_END) | closer(TOKEN_END_TRY);
constexpr uint64_t END_OF_UNWIND = closer(TOKEN_END) | closer(TOKEN_END_UNWIND);

/* A statement with blocks under way. */
struct Compound {
    Node *node;
    NodeList children;
    bool is_bad;
};

Compound begin_compound(NodeKind kind, uint64_t closers) {
    open_block(Current.kind, Current.start, closers);
    return {new_node(kind, Current.start), {}, false};
}

void add(Compound *compound, Node *child) {
    append(&compound->children, child);
    compound->node->first_child = compound->children.first;
    if (child->kind == NODE_BAD) compound->is_bad = true;
}

void add_all(Compound *compound, NodeList *list) {
    for (Node *next = list->first; next;) {
        Node *node = next;
        next = node->next;
        node->next = nullptr;
        add(compound, node);
    }
}

// After a head or a branch without one: its block.
void add_block(Compound *compound) { add(compound, parse_block()); }

Node *finish_compound(const Compound *compound, bool has_end) {
    if (has_end && !compound->is_bad) return finish(compound->node);
    compound->node->kind = NODE_BAD;
    return finish_bad(compound->node);
}

Node *end_compound(Compound *compound, TokenKind other_end) {
    bool has_end = Current.kind == TOKEN_END || Current.kind == other_end;
    close_block(other_end, compound->node);
    return finish_compound(compound, has_end);
}

// A head's expression. Comments in the first head stand in front of the statement, those in the
// others at the head of their block.
void add_first_head(Compound *compound, Statement *statement) {
    add(compound, parse_head());
    if (!compound->is_bad) put_inside_comments(statement);
}

Node *end_branch(Node *branch, NodeList *children) {
    assert(!branch->first_child);
    branch->first_child = children->first;
    branch->length = end_of(children->last) - branch->offset;
    return branch;
}

// A branch with a head, from its keyword on.
Node *parse_branch(NodeKind kind, Compound *compound, Statement *statement) {
    Node *branch = new_node(kind, Current.start);
    NodeList children;
    advance();
    append(&children, parse_head());
    if (children.first->kind == NODE_BAD)
        compound->is_bad = true;
    else if (statement)
        put_inside_comments(statement);
    append(&children, parse_block());
    return end_branch(branch, &children);
}

Node *parse_last_branch(NodeKind kind) {
    Node *branch = new_node(kind, Current.start);
    NodeList children;
    advance();
    append(&children, parse_block());
    return end_branch(branch, &children);
}

// What the range of a for in parentheses is followed by: a number of workers, which has no
// meaning, and the closing parenthesis.
void end_parentheses(uint32_t opener, bool is_parallel) {
    if (is_parallel && Current.kind == TOKEN_COMMA) {
        advance();
        parse_expression();
    }
    leave_level();
    if (Current.kind != TOKEN_CLOSE_PAREN) return unclosed_bracket(")", opener);
    advance();
}

// variable = range
void parse_loop_range(NodeList *head) {
    Node *variable = parse_reference();
    settle_target(variable);
    append(head, variable);
    if (Current.kind != TOKEN_ASSIGN) return unexpected_token("'=' after the loop's variable");
    advance();
    append(head, parse_expression());
}

void parse_loop_head(NodeList *head, bool is_parallel) {
    uint32_t opener = Current.start;
    bool has_parentheses = Current.kind == TOKEN_OPEN_PAREN;
    if (has_parentheses) {
        enter_level();
        if (!Failed) advance();
    }
    parse_loop_range(head);
    if (has_parentheses) end_parentheses(opener, is_parallel);
}

// Up to the first case there are only comments.
void add_comments_before_cases(Compound *compound) {
    NodeList list;
    parse_statements(&list);
    for (const Node *node = list.first; node; node = node->next) {
        if (node->kind == NODE_COMMENT || compound->is_bad) continue;
        note_error(UNEXPECTED_TOKEN, node->offset, end_of(node),
                   {"'case' after the head of 'switch'", "a statement"});
        compound->is_bad = true;
    }
    add_all(compound, &list);
}

// A name on the line of catch with nothing after it is that of the error.
bool is_catch_identifier() {
    if (Current.kind != TOKEN_NAME || (Current.flags & FIRST_ON_LINE)) return false;
    const char *at = skip_blanks(Scan.at);
    return *at == ';' || *at == ',' || is_line_end(*at) || class_of(*at) == BYTE_COMMENT ||
           at == Scan.end;
}

void add_handler(Compound *compound) {
    expect_closers(END_OF_TRY);
    advance();
    if (is_catch_identifier()) {
        compound->node->flags |= HAS_IDENTIFIER;
        Node *name = take_name();
        add_variable(name);
        add(compound, name);
    }
    add_block(compound);
}

}  // namespace

Node *parse_if(Statement *statement) {
    Compound compound = begin_compound(NODE_IF, BRANCHES_OF_IF);
    add(&compound, parse_branch(NODE_BRANCH, &compound, statement));
    while (Current.kind == TOKEN_ELSEIF)
        add(&compound, parse_branch(NODE_BRANCH, &compound, nullptr));
    if (Current.kind == TOKEN_ELSE) {
        expect_closers(END_OF_IF);
        add(&compound, parse_last_branch(NODE_ELSE));
    }
    return end_compound(&compound, TOKEN_END_IF);
}

Node *parse_for(Statement *statement) {
    bool is_parallel = Current.kind == TOKEN_PARFOR;
    TokenKind other_end = is_parallel ? TOKEN_END_PARFOR : TOKEN_END_FOR;
    Compound compound = begin_compound(NODE_FOR, closer(TOKEN_END) | closer(other_end));
    if (is_parallel) compound.node->flags |= PARALLEL;
    advance();
    NodeList head;
    parse_loop_head(&head, is_parallel);
    if (Failed) {
        recover();
        head = {};
        append(&head, new_node(NODE_BAD, compound.node->offset));
    }
    add_all(&compound, &head);
    if (!compound.is_bad) put_inside_comments(statement);
    add_block(&compound);
    return end_compound(&compound, other_end);
}

Node *parse_while(Statement *statement) {
    Compound compound = begin_compound(NODE_WHILE, closer(TOKEN_END) | closer(TOKEN_END_WHILE));
    advance();
    add_first_head(&compound, statement);
    add_block(&compound);
    return end_compound(&compound, TOKEN_END_WHILE);
}

// Comments in the condition after a block stand at the end of the block.
void put_inside_comments_last(Node *block) {
    NodeList list = {block->first_child, block->first_child};
    while (list.last && list.last->next) list.last = list.last->next;
    append_all(&list, &Scan.comments);
    block->first_child = list.first;
}

Node *parse_do(Statement *) {
    Current.kind = TOKEN_UNTIL;
    Compound compound = begin_compound(NODE_DO_UNTIL, closer(TOKEN_UNTIL));
    advance();
    Parsing.open_do++;
    add_block(&compound);
    Parsing.open_do--;
    bool has_end = Current.kind == TOKEN_UNTIL;
    close_block(TOKEN_UNTIL, compound.node);
    if (has_end) add(&compound, parse_head());
    if (!compound.is_bad) put_inside_comments_last(compound.node->first_child);
    return finish_compound(&compound, has_end);
}

Node *parse_switch(Statement *statement) {
    Compound compound = begin_compound(NODE_SWITCH, CASES);
    advance();
    add_first_head(&compound, statement);
    add_comments_before_cases(&compound);
    while (Current.kind == TOKEN_CASE) add(&compound, parse_branch(NODE_CASE, &compound, nullptr));
    if (Current.kind == TOKEN_OTHERWISE) {
        expect_closers(END_OF_SWITCH);
        add(&compound, parse_last_branch(NODE_OTHERWISE));
    }
    return end_compound(&compound, TOKEN_END_SWITCH);
}

Node *parse_try(Statement *) {
    Compound compound = begin_compound(NODE_TRY, END_OF_TRY | closer(TOKEN_CATCH));
    advance();
    add_block(&compound);
    if (Current.kind == TOKEN_CATCH) {
        add_handler(&compound);
    } else {
        add(&compound, new_node(NODE_BLOCK, Previous.end));
    }
    return end_compound(&compound, TOKEN_END_TRY);
}

Node *parse_unwind(Statement *) {
    Compound compound = begin_compound(NODE_UNWIND, END_OF_UNWIND | closer(TOKEN_CLEANUP));
    advance();
    add_block(&compound);
    if (Current.kind == TOKEN_CLEANUP) {
        expect_closers(END_OF_UNWIND);
        advance();
        add_block(&compound);
    } else {
        add(&compound, new_node(NODE_BLOCK, Previous.end));
    }
    return end_compound(&compound, TOKEN_END_UNWIND);
}

Node *parse_spmd(Statement *statement) {
    note_error(SPMD_BLOCK, Current.start, Current.end);
    Compound compound = begin_compound(NODE_BAD, closer(TOKEN_END));
    advance();
    if (Current.kind == TOKEN_OPEN_PAREN) add_first_head(&compound, statement);
    add_block(&compound);
    return end_compound(&compound, TOKEN_END);
}
