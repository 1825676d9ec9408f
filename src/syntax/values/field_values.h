/* The values of fields and of cells' elements. Where a variable is one record, each of its fields
 * flows as a variable does, and so do the fields of these. The elements of a cell flow together, as
 * one field that only ever gets more: what any of them may be. */
#pragma once

#include "syntax/values/flow.h"

/* What is known of a field of which nothing is known. */
constexpr Value UNKNOWN_FIELD = ANY_VALUE | MAY_BE_MISSING;

/* Whether it is surely one record, so that a field of it is one value. */
inline bool is_one_record(Value value) {
    return is_surely(value, MAY_BE_RECORD) && kinds_of(value) &&
           !may_be(value, MAY_BE_ARRAY | MAY_BE_EMPTY);
}

/* The fields of the holder that have been named so far; null after the last one. */
Symbol *first_field(const Symbol *holder);
Symbol *next_field(const Symbol *field);
/* What is known of a field of what a function gives. */
struct FieldResult {
    const char *name; /* interned */
    Value value;
    Value elements; /* of a cell; as those of begin_elements */
    FieldResult *next;
};

/* The field of what a variable, or another field, holds: its value flows as that of a variable.
 * Null where there are too many, or it lies too deep: nothing is known of that one. name: interned;
 * depth: of fields around the holder, 0 for a variable. */
Symbol *field_of(Symbol *holder, const char *name, int depth);
/* The elements of what surely is a cell there; null as of a field. */
Symbol *elements_of(Symbol *holder, int depth);
/* What a call of the function gives that is held there; null as of a field. */
Symbol *result_of(Symbol *holder, int depth);
/* The holder is a function from here on, which gives such a value; elements: as below. */
void begin_result(Symbol *holder, int depth, Value value, Value elements);
/* Elements of the cell may be this, too. */
void add_elements(Symbol *holder, int depth, Value value);
/* The holder is a cell from here on, with such elements: MAY_BE_MISSING for none, and the
 * UNKNOWN_FIELD for any. */
void begin_elements(Symbol *holder, int depth, Value elements);
/* What a cell holds where nothing has been put: []. */
constexpr Value NO_ELEMENT = MAY_BE_NUMBER | MAY_BE_ARRAY | MAY_BE_EMPTY;
/* The field, or variable, has been read, or been found to be there. */
void note_presence(Symbol *field);
/* The variable holds what another one does, which has such fields. */
void copy_fields(Symbol *variable, const Symbol *from);
/* The variable or field has another value from here on, with fields of which nothing is known. */
void assign(Symbol *holder, Value value);
/* Nothing is known of its fields from here on. */
void forget_fields(Symbol *holder);
/* It has none, and has no value or one without fields from here on. */
void begin_fields(Symbol *holder);
