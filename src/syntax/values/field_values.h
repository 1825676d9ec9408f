/* The values of fields and of cells' elements. Where a variable is one record, each of its fields
 * flows as a variable does, and so do the fields of these. The elements of a cell flow together, as
 * one field that only ever gets more: what any of them may be. So do the fields of an array of
 * records. */
#pragma once

#include "syntax/values/flow.h"

/* What is known of a field of which nothing is known. */
constexpr Value UNKNOWN_FIELD = ANY_VALUE | MAY_BE_MISSING;
/* Of fields inside each other so many flow. */
constexpr int DEEPEST_HOLDER = 3;

/* Whether it is surely a record, or an array of them. */
inline bool are_records(Value value) { return is_surely(value, MAY_BE_RECORD) && kinds_of(value); }

/* Whether it is a record, or an array of them, where a field of it is taken or set: of a number,
 * none is. */
inline bool has_fields(Value value) {
    constexpr Value OTHERS = MAY_BE_RECORD | MAY_BE_FUNCTION | MAY_BE_OTHER;
    return (value & OTHERS) == MAY_BE_RECORD;
}

/* Whether it is surely one record, so that a field of it is one value. */
inline bool is_one_record(Value value) {
    return is_surely(value, MAY_BE_RECORD) && kinds_of(value) &&
           !may_be(value, MAY_BE_ARRAY | MAY_BE_EMPTY);
}

/* The fields of the holder that have been named so far; null after the last one. */
Symbol *first_field(const Symbol *holder);
Symbol *next_field(const Symbol *field);
/* The field of what a variable, or another field, holds: its value flows as that of a variable.
 * Null where there are too many, or it lies too deep: nothing is known of that one. name: interned;
 * depth: of fields around the holder, 0 for a variable. */
Symbol *field_of(Symbol *holder, const char *name, int depth);
/* What stands for all fields that have not been named so far: it has no name, and its siblings are
 * the fields that have. */
Symbol *rest_of(Symbol *holder);
/* The elements of what surely is a cell there; null as of a field. */
Symbol *elements_of(Symbol *holder, int depth);
/* What a call of the function gives that is held there; null as of a field. */
Symbol *result_of(Symbol *holder, int depth);
/* What a cell holds where nothing has been put: []. */
constexpr Value NO_ELEMENT = MAY_BE_NUMBER | MAY_BE_ARRAY | MAY_BE_EMPTY;
/* The field, or variable, has been read, or been found to be there. */
void note_presence(Symbol *field);
/* What is known of the inside of a value: of the fields of records, in all of them, and of the
 * elements of a cell. */
struct KnownPart;
struct KnownParts {
    bool has_others; /* it may have fields that are not here */
    const KnownPart *first;
};
struct KnownPart {
    const char *name; /* as part_name gives it */
    Value value;
    const KnownParts *inside; /* null: nothing is known */
    const KnownPart *next;
};
const KnownPart *new_known_part(const char *name, Value value, const KnownParts *inside,
                                const KnownPart *next);
/* Null where that is nothing. */
const KnownParts *new_known_parts(bool has_others, const KnownPart *first);
/* That of what a variable or field holds; null: nothing is known. */
const KnownParts *parts_now(const Symbol *holder);
/* Of a value that is the one or the other; null for either: nothing is known. */
const KnownParts *joined_parts(const KnownParts *one, const KnownParts *other);
/* Whether the other tells no more, but for what is null in it. */
bool is_part_of(const KnownParts *one, const KnownParts *other);
/* A cell with such elements. */
const KnownParts *parts_of_cell(Value elements, const KnownParts *inside);
/* A function that gives such a result. */
const KnownParts *parts_of_called(Value result, const KnownParts *inside);
/* What the elements are, and what is known of their inside. MAY_BE_MISSING for no elements, and
 * UNKNOWN_FIELD for any. */
Value elements_of_cell(const KnownParts *cell);
const KnownParts *inside_of_cell(const KnownParts *cell);
/* The name of a part that somebody has written down. */
const char *part_name(const char *text);
/* A field of what has the parts, null: nothing is known; and any of its fields. Without a name. */
KnownPart part_in(const KnownParts *parts, const char *name);
KnownPart any_field_in(const KnownParts *parts);
/* The parts with a field set. */
const KnownParts *with_part(const KnownParts *parts, const char *name, Value value,
                            const KnownParts *inside);
/* The variable or field has another value from here on, with such parts. */
void assign_known(Symbol *holder, int depth, Value value, const KnownParts *parts);
/* The holder has other parts from here on. */
void give_parts(Symbol *holder, int depth, const KnownParts *parts);
/* The holder may hold that value, with such parts, too. */
void add_value(Symbol *holder, int depth, Value value, const KnownParts *parts);
/* Any field of the holder, which is surely a record: its value, and what is known of its inside. */
Value any_field(const Symbol *holder, int depth);
const KnownParts *parts_of_any_field(const Symbol *holder);
/* The variable or field has another value from here on, with fields of which nothing is known. */
void assign(Symbol *holder, Value value);
/* Nothing is known of its fields from here on. */
void forget_fields(Symbol *holder);
/* It has none, and has no value or one without fields from here on. */
void begin_fields(Symbol *holder);
