/* Making nodes. */
#pragma once

#include "syntax/tree/arena.h"
#include "syntax/tree/tree.h"

/* Children under way. */
struct NodeList {
    Node *first = nullptr;
    Node *last = nullptr;
};

inline void append(NodeList *list, Node *node) {
    if (list->last) {
        list->last->next = node;
    } else {
        list->first = node;
    }
    list->last = node;
}
/* Moves all of more after the list. */
inline void append_all(NodeList *list, NodeList *more) {
    if (!more->first) return;
    assert(!more->last->next && "the list ends there");
    append(list, more->first);
    list->last = more->last;
    *more = {};
}

/* A node at offset, of no length so far. */
inline Node *new_node(NodeKind kind, uint32_t offset) {
    Node *node = static_cast<Node *>(take_bytes(sizeof(Node)));
    *node = {kind, OPERATOR_NONE, OPERATOR_NONE, 0, 0, 0, offset, 0, {nullptr}, {nullptr}, nullptr};
    return node;
}
inline Node *new_text_node(NodeKind kind, uint32_t start, uint32_t end, const char *text) {
    assert(start <= end);
    Node *node = new_node(kind, start);
    node->length = end - start;
    node->text = text;
    return node;
}
/* The same node alone, without siblings after it; its children are shared. */
inline Node *copy_node(const Node *node) {
    Node *copy = new_node(node->kind, node->offset);
    *copy = *node;
    copy->next = nullptr;
    return copy;
}
/* A node around a child, which may be followed by siblings. */
inline Node *new_parent(NodeKind kind, Node *child) {
    Node *node = new_node(kind, child->offset);
    node->first_child = child;
    return node;
}
