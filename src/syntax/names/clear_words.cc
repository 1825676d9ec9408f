// The words of clear and clearvars.
#include "syntax/names/clear_words.h"

#include <string.h>

#include "syntax/scan/spellings.h"

namespace {

bool is_clearing(const Node *name) {
    return name->kind == NODE_NAME && is_known_to(name->text, CLEARS_VARIABLES);
}

bool are_texts(const Node *first) {
    for (const Node *word = first; word; word = word->next)
        if (word->kind != NODE_STRING && word->kind != NODE_WORD) return false;
    return true;
}

}  // namespace

ClearWords clear_words(const Node *statement) {
    const Node *node = statement->first_child;
    const Node *first = node->next;  // of a command
    if (statement->kind == NODE_EXPRESSION && node->kind == NODE_REFERENCE) {
        node = node->first_child;
        if (node->next->kind != NODE_ARGUMENTS || node->next->next) return {};
        first = node->next->first_child;
    }
    if (!is_clearing(node)) return {};
    return {node, first, are_texts(first)};
}

bool means_all(const Node *word) {
    static const char *const words[] = {"all",   "-all",    "-a",       "variables", "-variables",
                                        "-vars", "classes", "-classes", "-v",        "-c"};
    if (!word) return true;
    for (const char *known : words)
        if (strcmp(word->text, known) == 0) return true;
    return false;
}
