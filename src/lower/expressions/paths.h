/* The text of a reference while its selectors are read, from left to right. */
#pragma once

#include <stddef.h>

#include "lower/expressions/end_positions.h"

struct Path {
    const char *text;
    size_t length;
    size_t spare;   /* bytes after the text that may be written */
    bool is_own;    /* the text is no one else's */
    bool is_call;   /* of a call or an expression: it needs a name before it is indexed */
    bool has_index; /* the last selector is an index */
    bool has_field;
    const char *named;   /* a temporary that has the value of the text's beginning; null for none */
    size_t named_length; /* of that beginning */
};

Path begin_path(const char *text, bool is_call);
/* A new selector: a field; ( ) or { } with the arguments; each after a temporary where the path is
 * a call. The field .(e) makes the path a call. */
void add_field(Path *path, const Node *field);
void add_index(Path *path, const Node *selector, bool may_be_call = false);
void add_dynamic_field(Path *path, const Node *selector);
/* Any of the three. may_be_call: ( ) may be a call: then ranges in it are values. */
void add_selector(Path *path, const Node *selector, bool may_be_call = false);
/* The path of a reference up to the selector end (not included; null for all): of a value. */
Path value_path(const Node *reference, const Node *end);
/* Puts the path into a temporary when it is a call. */
void name_path(Path *path);
/* The same where its text will be repeated, also when it is long. */
void name_repeated_path(Path *path);
/* An index with these arguments. */
void append_index(Path *path, const vExpr *arguments);
