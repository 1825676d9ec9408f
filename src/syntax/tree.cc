// What is inside of nodes.
#include "syntax/tree.h"

bool has_end_inside(const Node *node) {
    if (node->kind == NODE_END) return true;
    for (const Node *child = first_child(node); child; child = child->next)
        if (has_end_inside(child)) return true;
    return false;
}
