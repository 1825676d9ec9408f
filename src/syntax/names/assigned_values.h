/* The values that variables are assigned, noted while names are settled. */
#pragma once

#include "syntax/names/names.h"

enum ValueKind : uint8_t {
    VALUE_WHOLE,  /* the expression is assigned */
    VALUE_LOOP,   /* a loop runs over it */
    VALUE_RESULT, /* the variable is one of several targets of the call */
    VALUE_UNKNOWN
};

/* A value that a variable takes. */
struct AssignedValue {
    const Node *node;
    ValueKind kind;
    uint32_t statement;  /* place of the assignment of VALUE_WHOLE; UINT32_MAX where it is none */
    AssignedValue *next; /* earlier in the walk, or null */
};

/* The variable takes a value. node: null for VALUE_UNKNOWN. */
void note_value(Symbol *symbol, ValueKind kind, const Node *node);
/* An element or a field of the variable, the base of target, is assigned value: null where that is
 * not one expression. */
void note_element(Symbol *symbol, const Node *target, const Node *value);
/* The HANDLE or ANONYMOUS that the value is; null for any other one. */
const Node *held_function(const AssignedValue *value);
