// What is inside of nodes.
#include "syntax/tree/tree.h"

#include <assert.h>

#include "support/same_text.h"

Node *last_selector(const Node *reference) {
    assert(reference->kind == NODE_REFERENCE);
    Node *selector = second_child(reference);
    while (selector->next) selector = selector->next;
    return selector;
}

uint32_t depth_of(const Node *reference) {
    if (reference->kind != NODE_REFERENCE) return 0;
    uint32_t depth = 0;
    for (const Node *selector = second_child(reference); selector; selector = selector->next)
        depth += selector->kind != NODE_ARGUMENTS;
    return depth;
}

bool grows_in_plane(const Node *selector) {
    bool is_index = selector->kind == NODE_ARGUMENTS || selector->kind == NODE_BRACES;
    const Node *row = is_index ? selector->first_child : nullptr;
    return row && row->next && (is_colon(row) || has_end_inside(row));
}

const Node *single_element(const Node *literal) {
    assert(literal->kind == NODE_MATRIX || literal->kind == NODE_CELL);
    const Node *row = literal->first_child;
    return row && !row->next && !row->first_child->next ? row->first_child : nullptr;
}

Node *nth_child(const Node *node, int n) {
    Node *child = first_child(node);
    while (--n > 0) child = child->next;
    assert(child);
    return child;
}

Node *child_of_kind(const Node *node, NodeKind kind) {
    Node *child = first_child(node);
    while (child->kind != kind) child = child->next;
    return child;
}

Node *arguments_of_call(const Node *expression, const char *function) {
    if (expression->kind != NODE_REFERENCE) return nullptr;
    const Node *base = expression->first_child;
    bool is_named_so = base->kind == NODE_NAME && is_same_text(base->text, function);
    const Node *arguments = base->next;
    bool is_call = is_named_so && arguments->kind == NODE_ARGUMENTS && !arguments->next;
    return is_call ? arguments->first_child : nullptr;
}

bool has_end_inside(const Node *node) {
    if (node->kind == NODE_END) return true;
    for (const Node *child = first_child(node); child; child = child->next)
        if (has_end_inside(child)) return true;
    return false;
}

static bool is_same_node(const Node *one, const Node *other) {
    if (one->kind != other->kind || one->op != other->op || one->joint != other->joint)
        return false;
    if (one->kind == NODE_ANONYMOUS) return false;
    if (one->text && other->text) return is_same_text(one->text, other->text);
    return one->text == other->text;
}

bool is_same_tree(const Node *one, const Node *other) {
    if (!is_same_node(one, other)) return false;
    const Node *child = first_child(other);
    for (const Node *own = first_child(one); own; own = own->next, child = child->next)
        if (!child || !is_same_tree(own, child)) return false;
    return !child;
}
