/* What variables, fields and elements begin as, where a part of them is set and they may not be
 * there yet. */
#pragma once

#include "lower/expressions/paths.h"
#include "syntax/names/names.h"

constexpr const char *EMPTY_CELL = "rtable([],subtype='Vector[row]')";

/* Lets variables begin without elements where a part of them may be set first: those that are no
 * parameters. */
void put_starts(const Scope *scope);

/* What a variable or a field is in front of its first selector; is_cell: it is to be a cell. */
const char *start_text(const Node *selector, bool is_cell);

/* While the selectors of a target are gone through. */
struct PartStarts {
    const Node *base;
    const Node *unknown;  /* the first selector whose part may not be there; null: all are */
    bool is_there;        /* what is selected so far, and begins in front of unknown */
    int at;               /* selectors so far */
    const char *array;    /* what the last index selects one element of; null for another index */
    const char *position; /* of that element */
    int read; /* selectors whose parts the value reads too, so that they are there; -1: not known */
};

/* Puts what the variable of a target, a REFERENCE, begins as. */
PartStarts start_variable(const Node *target, const char *written);
/* Puts what path begins as in front of selector, and that what it selects begins in front of the
 * next one; holder: the selector before, or the base. Answers whether selector has been added to
 * path, with a position that has got a name. */
bool start_part(PartStarts *starts, Path *path, const Node *holder, const Node *selector);

/* Puts that path begins as a cell in front of braces that select several elements to be set. */
void start_list(const Path *path, const Node *holder, const Node *selector);
/* Whether the value of an assignment reads what would begin for its target, as numel(c) does what
 * c{3}{1} is set in. */
bool must_be_read_first(const Node *target, const Node *value);

/* A text for the one position of an index into base that may be repeated. */
const char *stable_position(const Node *argument, const char *base);
/* A text for a name of a field, or a position, that may be repeated. */
const char *stable_text(const char *text);
