// Statements of one line: expressions, assignments, declarations.
#include <assert.h>

#include "syntax/parse/expressions.h"
#include "syntax/parse/statements.h"
#include "syntax/parse/steps.h"

namespace {

bool is_target(const Node *node) {
    if (node->kind == NODE_REFERENCE) node = node->first_child;
    return is_plain_name(node);
}

const char *description_of(const Node *node) {
    switch (node->kind) {
        case NODE_NUMBER: return "a number";
        case NODE_STRING: return "a text";
        case NODE_HANDLE:
        case NODE_ANONYMOUS: return "a function handle";
        default: return "an expression";
    }
}

// ~ and what stands after it and a blank are two targets.
bool is_tilde_and_target(const Node *element) {
    return element->kind == NODE_PREFIX && element->op == OPERATOR_NOT &&
           element->first_child->offset > element->offset + 1;
}

void append_targets(NodeList *targets, Node *element) {
    while (is_tilde_and_target(element)) {
        element->kind = NODE_TILDE;
        element->op = OPERATOR_NONE;
        Node *next = element->first_child;
        element->first_child = nullptr;
        element->length = 1;
        append(targets, element);
        element = next;
    }
    if (element->kind != NODE_TILDE) settle_target(element);
    append(targets, element);
}

Node *targets_of(Node *matrix) {
    assert(matrix->kind == NODE_MATRIX);
    NodeList targets;
    Node *row = matrix->first_child;
    bool has_gap = row && has_flag(row, HAS_GAP);
    if (has_gap || (row && row->next)) {
        const char *wrong = has_gap ? "nothing between two commas" : "several rows";
        syntax_error(INVALID_TARGET, matrix->offset, end_of(matrix), {wrong});
        return matrix;
    }
    Node *next = row ? row->first_child : nullptr;
    while (next) {
        Node *element = next;
        next = element->next;
        element->next = nullptr;
        append_targets(&targets, element);
    }
    matrix->kind = NODE_TARGETS;
    matrix->first_child = targets.first;
    return matrix;
}

Node *new_assignment(NodeKind kind, Node *target, Node *value) {
    assert(!value->next);
    Node *node = new_parent(kind, target);
    target->next = value;
    return finish(node);
}

// x = y = v: the inner assignments go in front, and the outer one reads what they have set.
Node *split_assignments(Statement *statement, const NodeList *targets, Node *value) {
    Node *target = targets->first;  // the innermost one
    while (target->next) {
        Node *outer = target->next;
        append(statement->list, new_assignment(NODE_ASSIGN, target, value));
        value = copy_node(target);
        target = outer;
    }
    return new_assignment(NODE_ASSIGN, target, value);
}

void prepend(NodeList *list, Node *node) {
    node->next = list->first;
    list->first = node;
}

Node *parse_assignment(Statement *statement, Node *target) {
    settle_target(target);
    NodeList targets;
    prepend(&targets, target);
    if (!Failed) advance();
    Node *value = parse_expression();
    while (Current.kind == TOKEN_ASSIGN && Scan.language == LANGUAGE_OCTAVE) {
        settle_target(value);
        prepend(&targets, value);
        if (!Failed) advance();
        value = parse_expression();
    }
    if (Current.kind == TOKEN_ASSIGN) syntax_error(DOUBLE_ASSIGNMENT, Current.start, Current.end);
    if (targets.first->next) refuse_steps();
    return Failed ? new_assignment(NODE_ASSIGN, target, value)
                  : split_assignments(statement, &targets, value);
}

Node *parse_multi_assignment(Node *matrix) {
    Node *targets = targets_of(matrix);
    Parsing.lone_tilde = NO_TILDE;
    if (!Failed) advance();
    Node *value = parse_expression();
    if (Current.kind == TOKEN_ASSIGN) syntax_error(DOUBLE_ASSIGNMENT, Current.start, Current.end);
    return new_assignment(NODE_MULTI_ASSIGN, targets, value);
}

// x += v
Node *parse_op_assignment(Node *target) {
    OperatorId op = Current.assigned;
    settle_target(target);
    if (!Failed) advance();
    Node *node = new_assignment(NODE_ASSIGN, target, parse_expression());
    node->op = op;
    return node;
}

Node *parse_increment(Node *target) {
    Token step = Current;
    if (!Failed) advance();
    return new_increment(target, step);
}

// [ ] at the start of a statement may hold targets, lone ~ among them.
Node *parse_first_expression() {
    bool may_be_targets = Current.kind == TOKEN_OPEN_BRACKET;
    Parsing.lone_tilde = NO_TILDE;
    Parsing.target_depth = may_be_targets ? Parsing.depth + 1 : -1;
    Parsing.may_be_target = true;
    Node *node = parse_expression();
    Parsing.may_be_target = false;
    Parsing.target_depth = -1;
    return node;
}

void refuse_lone_tilde() {
    if (Parsing.lone_tilde == NO_TILDE) return;
    uint32_t at = Parsing.lone_tilde;
    syntax_error(UNEXPECTED_TOKEN, at, at + 1, {"'=' after targets with '~'", describe_token()});
    Parsing.lone_tilde = NO_TILDE;
}

// name, or name = value
Node *parse_declared() {
    Node *name = take_name();
    add_variable(name);
    if (Current.kind != TOKEN_ASSIGN) return name;
    advance();
    return new_assignment(NODE_ASSIGN, name, parse_expression());
}

// An expression or an assignment, by what follows the first expression.
Node *parse_by_sign(Statement *statement) {
    Node *first = parse_first_expression();
    if (Current.kind == TOKEN_ASSIGN)
        return first->kind == NODE_MATRIX ? parse_multi_assignment(first)
                                          : parse_assignment(statement, first);
    refuse_lone_tilde();
    if (Current.kind == TOKEN_OP_ASSIGN) return parse_op_assignment(first);
    if (Current.kind == TOKEN_INCREMENT) return parse_increment(first);
    return finish(new_parent(NODE_EXPRESSION, first));
}

}  // namespace

void settle_target(Node *target) {
    if (Failed) return;
    if (!is_target(target)) {
        syntax_error(INVALID_TARGET, target->offset, end_of(target), {description_of(target)});
        return;
    }
    add_variable(target->kind == NODE_NAME ? target : target->first_child);
}

Node *parse_simple(Statement *statement) {
    if (Scan.language != LANGUAGE_OCTAVE) return parse_by_sign(statement);
    begin_steps(true);
    Node *node = parse_by_sign(statement);
    Parsing.may_step = false;
    return node;
}

Node *parse_declaration(NodeKind kind) {
    Node *node = new_node(kind, Current.start);
    NodeList names;
    advance();
    if (Current.kind != TOKEN_NAME) unexpected_token("the name of a variable");
    while (Current.kind == TOKEN_NAME) append(&names, parse_declared());
    node->first_child = names.first;
    return finish(node);
}
