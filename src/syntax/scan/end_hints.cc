// Which block may have lost its end, by indentation.
#include "syntax/scan/end_hints.h"

#include "syntax/scan/class_table.h"
#include "syntax/scan/scanner.h"

namespace {

// Bytes of blanks in front of an offset on its line, or -1 when something else stands there.
int indentation(uint32_t offset) {
    const char *at = Scan.text + offset;
    while (at > Scan.text && is_blank(at[-1])) at--;
    bool is_first = at == Scan.text || is_line_end(at[-1]);
    return is_first ? static_cast<int>(Scan.text + offset - at) : -1;
}

bool has_end(const Node *node) {
    switch (node->kind) {
        case NODE_IF:
        case NODE_FOR:
        case NODE_WHILE:
        case NODE_SWITCH:
        case NODE_TRY: return true;
        default: return false;
    }
}

// Where the last word of a node begins.
uint32_t end_word(const Node *node) {
    uint32_t at = end_of(node);
    while (at > node->offset && is_word(Scan.text[at - 1])) at--;
    return at;
}

bool is_suspect(const Node *node) {
    return has_end(node) && indentation(end_word(node)) >= 0 &&
           indentation(end_word(node)) < indentation(node->offset);
}

}  // namespace

const Node *find_suspect(const Node *node) {
    for (const Node *child = first_child(node); child; child = child->next) {
        if (child->kind < NODE_EXPRESSION) continue;
        if (const Node *suspect = find_suspect(child)) return suspect;
        if (is_suspect(child)) return child;
    }
    return nullptr;
}
