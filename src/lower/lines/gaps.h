/* What cannot be translated: the statement that holds it is left in the output as comment lines
 * with its source. */
#pragma once

#include <initializer_list>

#include "diagnose/messages.h"
#include "lower/lines/lines.h"
#include "syntax/tree/tree.h"

/* Reports a message about the node, in the file that is being lowered. */
void report_at(MessageId id, const Node *node, std::initializer_list<const char *> operands = {});
/* The same of a gap or an error: the current statement is given up. */
void report_gap(MessageId id, const Node *node, std::initializer_list<const char *> operands = {});
/* Puts the source of the node as comment lines, with what is wrong in it in front. */
void put_gap(const Node *node, MessageId id);
/* The same of a node BAD, whose error has been reported. */
void put_bad(const Node *node);
/* Whether the line is the first one of either. */
bool is_gap_line(const Line *line);
