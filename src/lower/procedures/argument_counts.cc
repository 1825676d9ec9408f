// How many arguments the calls in a file give its functions.
#include "lower/procedures/argument_counts.h"

#include <limits.h>

#include <algorithm>

#include "lower/program/program_files.h"
#include "support/allocation.h"

namespace {

struct Fewest {
    int count;
};

// The functions among the nodes, and those nested in them.
void enter_functions(SourceFile *file, const Node *first) {
    for (const Node *node = first; node; node = node->next) {
        if (node->kind != NODE_FUNCTION) continue;
        Fewest *fewest = AllocRecord<Fewest>();
        *fewest = {INT_MAX};
        enter_name(&file->fewest, node->text, fewest);
        enter_functions(file, child_of_kind(node, NODE_BLOCK)->first_child);
    }
}

bool may_be_several(const Node *argument) {
    if (argument->kind != NODE_REFERENCE) return false;
    const Node *last = argument->first_child;
    while (last->next) last = last->next;
    return last->kind == NODE_BRACES || last->kind == NODE_FIELD;
}

// -1 for an unknown number.
int count_arguments(const Node *first) {
    int count = 0;
    for (const Node *argument = first; argument; argument = argument->next, count++)
        if (may_be_several(argument)) return -1;
    return count;
}

// The arguments of a call are in the selector after its name, or are the words of a command.
void note_name(const SourceFile *file, const Node *name, const Node *parent) {
    Fewest *known = static_cast<Fewest *>(find_name(&file->fewest, name->text));
    if (!known) return;
    const Node *next = name->next;
    int count = 0;
    if (parent->kind == NODE_REFERENCE)
        count = next->kind == NODE_ARGUMENTS ? count_arguments(next->first_child) : -1;
    if (parent->kind == NODE_COMMAND) count = count_arguments(next);
    if (count >= 0) known->count = std::min(known->count, count);
}

// Whether the name, a child of the node, is a target or declared.
bool is_target(const Node *name, const Node *node) {
    bool is_first = name == node->first_child;
    switch (node->kind) {
        case NODE_PARAMETERS:
        case NODE_OUTPUTS:
        case NODE_FUNCTION:
        case NODE_TARGETS: return true;
        case NODE_ASSIGN:
        case NODE_FOR: return is_first;
        case NODE_REFERENCE: return !is_first;
        default: return false;
    }
}

void note_calls(const SourceFile *file, const Node *node) {
    for (const Node *child = first_child(node); child; child = child->next) {
        if (child->kind != NODE_NAME) {
            if (first_child(child)) note_calls(file, child);
        } else if (!is_target(child, node)) {
            note_name(file, child, node);
        }
    }
}

}  // namespace

int fewest_arguments(SourceFile *file, const char *name) {
    if (!file->has_fewest) {
        file->has_fewest = true;
        enter_functions(file, file->tree->first_child);
        note_calls(file, file->tree);
    }
    const Fewest *known = static_cast<const Fewest *>(find_name(&file->fewest, name));
    return known ? known->count : INT_MAX;
}
