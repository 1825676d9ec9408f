/* The walk over a function that finds what its values may be; its parts call each other. */
#pragma once

#include "syntax/values/field_values.h"
#include "syntax/values/flow.h"
#include "syntax/values/given_counts.h"

/* What a function of another file gives, as that file tells by itself. */
struct OutputValue {
    Value value;             /* what the output may be where the function ends */
    const KnownParts *parts; /* and what is known of its inside there; null for nothing */
};
struct FunctionResults {
    int32_t count; /* of outputs, varargout not */
    const OutputValue *outputs;
    OutputValue rest;       /* all others */
    const TakenPart *taken; /* of its parameters (taken_parts.h) */
    const Symbol *globals;  /* to which the file gives cells (held_values.h); null for none */
};

/* What the program itself has under the names of functions. */
struct FunctionFinders {
    bool (*has)(const Node *name);             /* whether it has a function, or may have one */
    Node *(*definition)(const Symbol *symbol); /* FUNCTION of a name that means one of the same
                                                  file, or null; null: none is looked for */
    const FunctionResults *(*outside)(const char *name); /* of a name that means one of another
                                                  file; null where nothing is known, or nobody
                                                  is asked */
    NameMap *globals; /* what is known of those of the file (held_values.h); null for nothing */
};
extern FunctionFinders Finders;
/* The function or script whose values are being traced. */
extern Scope *TracedScope;
/* The statement of its body in which the flow is. */
extern const Node *OutermostStatement;
/* The value of an assignment to x(k): of a cell the host takes the element there, too. */
extern const Node *PutAsElement;

/* The value of an expression where the flow is now; it is entered into the node and all nodes
 * inside. */
Value trace_expression(Node *node);
/* The values of arguments, of a row: first and its siblings. */
void trace_all(Node *first);
/* The same of what no cell can be: a condition, or the positions in an index, first and siblings.
 */
Value trace_condition(Node *condition);
void trace_positions(Node *first);
/* No cell can be the value of the expression where it stands. */
void note_operand(Node *node);
/* MATLAB's own function that a name means, or null. */
const LibraryFunction *library_of(Node *name);
/* The function that a reference or a name calls, and first of its arguments; all null for another
 * expression. */
struct LibraryCall {
    const LibraryFunction *function; /* null where MATLAB's own library does not have it */
    Node *arguments;                 /* null for none */
    Node *name;                      /* that is called */
};
LibraryCall library_call(Node *node);

/* Those of literals, references and functions. */
Value trace_matrix(Node *matrix);
Value trace_cell(Node *cell);
Value trace_reference(Node *reference);
Value trace_anonymous(Node *anonymous);
/* The value of a call of a name that is no variable, with these arguments, first and siblings; both
 * null for a bare name. */
Value value_of_call(Node *name, const Node *selectors, Node *arguments);
/* feval(function, ...), MATLAB's own. */
bool is_feval(const Node *name, const Node *arguments);
/* What stands in the selectors of a target. */
void trace_selectors(Node *reference);
/* The value of target op value. */
Value trace_operator(OperatorId op, Node *target, Value value);
/* Part of a value that an index selects. */
Value selected_value(Value base, const Node *arguments);
/* What the elements of a cell may be that the expression gives; MAY_BE_MISSING for none, and
 * UNKNOWN_FIELD of which nothing is known. Its values have been traced. */
Value elements_given(Node *expression);
/* What is known of the inside of the expression's value, which lies in so many others; null for
 * nothing. Its values have been traced. */
const KnownParts *parts_given(Node *expression, int depth);
/* Whether it may stand for any number of values, as c{:} and s.f do. */
bool may_be_list(const Node *element);
/* Whether an index, the arguments of a reference, surely selects one element. */
bool selects_one(const Node *arguments);
/* Every variable of TracedScope may have been set, and to anything; missing: MAY_BE_MISSING where
 * it may have been cleared, or 0. */
void forget_all(Value missing);
/* How often that has happened in the function. */
int times_forgotten();

/* What a target holds after it has been set; value: of what it is set to, parts: of its inside.
 * expression: null where the value is not that of an expression; a target that may be a list, as
 * [c{k}] and [s.f], is then given others, too. */
void trace_target(Node *target, Value value, const KnownParts *parts, const Node *expression);
/* The same of a list, c{1:2}, each element of which is given such a value. */
void trace_list_target(Node *target, Value value, const KnownParts *parts);
/* Whether the target, whose selectors have been traced, surely takes several values: [c{:}], or
 * [s.f] of an array of records. */
bool is_list_target(const Node *target);

/* The flow goes on where the condition has been true, or false. */
void assume(Node *condition, bool is_true);
/* The flow goes on where the value of the expression, of a switch, is one of the case's. */
void assume_case(const Node *expression, const Node *cases);
/* So many arguments have been given to the function, as the condition or check at offset tells. */
void assume_given(GivenCounts given, uint32_t offset);
