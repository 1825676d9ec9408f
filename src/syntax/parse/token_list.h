/* The tokens of a source that has been read, for programs that colour it. */
#pragma once

#include <stddef.h>

#include "syntax/scan/scanner.h"
#include "syntax/tree/tree.h"

/* What list_tokens tells of: the bytes from start to end. May not throw. */
struct TokenListing {
    void *context;
    void (*token)(void *context, TokenKind kind, uint32_t start, uint32_t end);
    /* A command from its name to its last word, or a line for the system. */
    void (*command)(void *context, uint32_t start, uint32_t end);
};

/* Tells of each token that has bytes, in source order. Line ends are none; comments are, one for
 * each line, and so are errors. commands: the COMMAND and SYSTEM nodes of the tree, by their
 * offsets, as only the parser knows them. To be called when the source has been read, in the same
 * language. */
void list_tokens(Source *source, const Node *const *commands, size_t command_count,
                 const TokenListing *listing);
