/* Texts that a program puts together from literals and from pieces that it knows at run time only:
 * ['s.' name ' = 1;'], sprintf('load %s', file). Such a text can be read as a program where each
 * piece stands in a place that takes any text or number: as the name of a field, say. */
#pragma once

#include "diagnose/source.h"
#include "syntax/tree/tree.h"

struct ComposedText;

/* The text that an expression gives; null for one that cannot be taken apart. */
const ComposedText *composed_text(const Node *expression);
/* Its characters, with a name of its own in the place of each piece. */
const char *text_of(const ComposedText *composed);
/* Whether it is literal. */
bool has_no_pieces(const ComposedText *composed);
/* Whether the pieces may be evaluated once more: variables, their elements and fields. */
bool is_repeatable(const ComposedText *composed);
/* Puts copies of the pieces into the tree that was read from the text, in the places of their
 * names. False, and the tree is of no use, where one stands in a place that takes only some texts.
 */
bool put_pieces(Node *file, const ComposedText *composed);
/* Reports what each piece has been taken for, at its place in the source. */
void report_pieces(const ComposedText *composed, Source *source);
