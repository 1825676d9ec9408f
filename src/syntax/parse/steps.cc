// Octave's ++ and -- as values.
#include "syntax/parse/steps.h"

#include "syntax/parse/expressions.h"

namespace {

// For each the statement is walked once.
constexpr uint8_t MOST_STEPS = 8;

void refuse_step(uint32_t start, uint32_t end) {
    const char *found = describe_bytes(Scan.text + start, Scan.text + end);
    const char *places = " as a statement, or on a variable that a simple statement uses once";
    syntax_error(UNEXPECTED_TOKEN, start, end, {join({found, places}), found});
}

// The value's step, as a statement. The token is that of ++ or --.
Node *put_step(NodeList *list, Node *value, const Token &token) {
    bool can_step = Parsing.may_step && Parsing.steps < MOST_STEPS && is_plain_name(value);
    if (can_step) {
        Parsing.steps++;
        append(list, new_increment(copy_node(value), token));
    } else {
        refuse_step(token.start, token.end);
    }
    return value;
}

int uses_of(const Node *node, const char *name) {
    if (node->kind == NODE_NAME) return node->text == name;
    int uses = 0;
    for (const Node *child = first_child(node); child; child = child->next)
        uses += uses_of(child, name);
    return uses;
}

void refuse_put(const Node *step) {
    const Node *one = first_child(step)->next;
    refuse_step(one->offset, end_of(one));
}

void check_steps(const NodeList *steps, const Node *statement) {
    for (const Node *step = steps->first; step; step = step->next)
        if (uses_of(statement, first_child(step)->text) > 1) refuse_put(step);
}

}  // namespace

Node *take_step_before() {
    Token token = Current;
    advance();
    if (Current.kind != TOKEN_NAME) refuse_step(token.start, token.end);
    return put_step(&Parsing.steps_before, parse_reference(), token);
}

Node *take_step_after(Node *value) {
    Token token = Current;
    advance();
    return put_step(&Parsing.steps_after, value, token);
}

void begin_steps(bool may_step) {
    Parsing.may_step = may_step;
    Parsing.steps = 0;
    Parsing.steps_before = Parsing.steps_after = {};
}

void refuse_steps() {
    for (const NodeList *steps : {&Parsing.steps_before, &Parsing.steps_after})
        if (steps->first) refuse_put(steps->first);
}

Node *put_steps(Statement *statement, Node *node) {
    NodeList before = Parsing.steps_before;
    NodeList after = Parsing.steps_after;
    begin_steps(false);
    bool is_name = node->kind == NODE_EXPRESSION && node->first_child->kind == NODE_NAME;
    if (is_name && before.first && !after.first) return before.first;
    check_steps(&before, node);
    check_steps(&after, node);
    if (Failed) return node;
    append_all(statement->list, &before);
    append_all(&statement->after, &after);
    return node;
}

Node *new_increment(Node *target, const Token &token) {
    Node *one = new_text_node(NODE_NUMBER, token.start, token.end, "1");
    one->flags = NUMBER_INTEGER;
    settle_target(target);
    target->next = one;
    Node *node = new_parent(NODE_ASSIGN, target);
    node->op = token.assigned;
    return finish(node);
}
