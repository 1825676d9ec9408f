/* Forms that the host has for constructs with blocks: what the host answers holds a word for each
 * block, and the lines of the block are put in the word's place. So a block is lowered once,
 * however deep it lies, and never becomes a text. */
#pragma once

#include <initializer_list>

#include "lower/lines/lines.h"
#include "syntax/tree/tree.h"

/* A block and the word that stands for it. */
struct BlockPlace {
    const char *word; /* of the names that no source has: qxrp_ in front */
    const Node *block;
};

/* The word, or the empty text of a block without children. */
const char *block_word(const BlockPlace *place);
/* Puts the lines of an answer, with those of the blocks in the place of their words: as deep as the
 * word is indented. What shares a line with a word is put on lines of its own. False, and nothing
 * is put, where a word occurs twice. */
bool put_block_form(const char *answer, std::initializer_list<BlockPlace> places);
/* The block as lines at a level. */
Lines lower_block_apart(const Node *block, int level);
