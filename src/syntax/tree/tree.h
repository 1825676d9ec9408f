/* The tree of a MATLAB source. Nodes and their texts are kept until the run ends and are never
 * freed alone. The parser makes the tree and the names are entered into it; then nobody changes
 * it.
 *
 * Chains of operators, selectors of a reference, branches of an if and statements of a block are
 * flat lists, so that a long source makes a broad tree, not a deep one. */
#pragma once

#include <assert.h>
#include <stdint.h>

#include "syntax/tree/operators.h"

struct Node;
struct Region;
struct Scope;
struct Symbol;

// clang-format off
/* Kinds of nodes. "Children" are in source order, reached by first_child and next; [ ] are children
 * that may be absent.
 *
 * EXPRESSIONS
 * NODE_NUMBER         text: as the host reads it: exponent e, hexadecimal and binary in decimal,
 *                     neither suffix nor i or j. Flags NUMBER_INTEGER, NUMBER_IMAGINARY
 * NODE_STRING         text: the characters that it stands for, without a NUL. Flag DOUBLE_QUOTED
 *                     where it may be an object: in matlab. The Name of an argument Name=value is
 *                     such a string
 * NODE_NAME           text: interned, of a superclass's method name@class; symbol
 * NODE_END            end as a position in an index
 * NODE_COLON          a lone colon as an argument
 * NODE_TILDE          ~ among targets or parameters
 * NODE_PARENS         child: the expression in parentheses
 * NODE_PREFIX         op + child
 * NODE_CHAIN          children: operands of one level of binary operators, grouped to the left;
 *                     each but the first joins what stands before it by its joint. a + b - c is
 *                     CHAIN(a, +b, -c). A POSTFIX has no operand of its own: x'^2 is
 *                     CHAIN(x, 'POSTFIX, ^2). op: the joint of the second child
 * NODE_POSTFIX        in a CHAIN only: joint is a transpose
 * NODE_RANGE          children: start, stop or start, step, stop
 * NODE_MATRIX         [ ], children: ROW
 * NODE_CELL           { }, children: ROW
 * NODE_ROW            children: one element or more
 * NODE_REFERENCE      children: the base (no REFERENCE), then one selector or more:
 * NODE_ARGUMENTS        ( ), children: arguments
 * NODE_BRACES           { }, children: arguments
 * NODE_FIELD            .name, text: interned
 * NODE_DYNAMIC_FIELD    .(e), child
 * NODE_HANDLE         @name, text: interned, with the dots of packages; symbol
 * NODE_ANONYMOUS      children: PARAMETERS, expression
 *
 * STATEMENTS (in a BLOCK or the FILE). Flags BLANK_BEFORE; PRINTS
 * NODE_EXPRESSION     child
 * NODE_ASSIGN         children: target (NAME, or REFERENCE with a NAME as base), value. op: of
 *                     x += y, or of x++ (the value is 1); else OPERATOR_NONE
 * NODE_MULTI_ASSIGN   children: TARGETS, value. [x] = v too
 * NODE_TARGETS        children: none, or NAME, REFERENCE, TILDE
 * NODE_COMMAND        hold on. Children: NAME, WORD ...
 * NODE_WORD           text
 * NODE_SYSTEM         !text. text: after the !
 * NODE_IF             children: BRANCH ..., [ELSE]
 * NODE_BRANCH           children: condition, BLOCK
 * NODE_ELSE             child: BLOCK
 * NODE_FOR            children: variable (NAME or REFERENCE), range, BLOCK. Flag PARALLEL: parfor;
 *                     KEEPS_VARIABLE, set with the names: its variable is read after the loop or
 *                     assigned in it
 * NODE_WHILE          children: condition, BLOCK
 * NODE_DO_UNTIL       children: BLOCK, condition
 * NODE_SWITCH         children: subject, COMMENT ..., CASE ..., [OTHERWISE]
 * NODE_CASE             children: value, BLOCK
 * NODE_OTHERWISE        child: BLOCK
 * NODE_TRY            children: BLOCK, [NAME: the identifier], BLOCK: the handler, perhaps empty.
 *                     Flag HAS_IDENTIFIER
 * NODE_UNWIND         children: BLOCK, BLOCK: the cleanup
 * NODE_GLOBAL         children: NAME, or ASSIGN with an initial value
 * NODE_PERSISTENT     the same
 * NODE_BREAK, NODE_CONTINUE, NODE_RETURN
 * NODE_FUNCTION       children: OUTPUTS, NAME, PARAMETERS, BLOCK. text: the name, with dots as
 *                     written. Flag CLOSED_BY_END. A nested function is a statement of the outer
 *                     one's block
 * NODE_OUTPUTS          children: NAME
 * NODE_PARAMETERS       children: NAME, TILDE, DEFAULT; scope: of its function
 * NODE_DEFAULT          children: NAME, value
 * NODE_ARGUMENT_BLOCK arguments ... end, children: ARGUMENT, COMMENT. Flags REPEATING, FOR_OUTPUTS
 * NODE_ARGUMENT         children: NAME or REFERENCE (options.Size), [default]. Flag HAS_CHECKS: a
 *                       size, a class or validators, which are not in the tree
 * NODE_COMMENT        text: after the % or #, or after ..., or a line of a block comment; without
 *                     the line end. Flags TRAILING, INSIDE, IN_BLOCK_COMMENT
 * NODE_BAD            what could not be read, its error reported; place: its whole source text.
 *                     Children: what of it could be read: comments, blocks, their heads. They are
 *                     in the place's text too
 *
 * NODE_BLOCK          children: statements and comments
 * NODE_FILE           children: statements, functions and comments; scope: of the script */
// The second is the word of a node that is printed as (word children...).
#define NODE_KIND_TABLE \
    NODE_KIND(NUMBER, "") \
    NODE_KIND(STRING, "") \
    NODE_KIND(NAME, "") \
    NODE_KIND(END, "end") \
    NODE_KIND(COLON, ":") \
    NODE_KIND(TILDE, "~") \
    NODE_KIND(PARENS, "paren") \
    NODE_KIND(PREFIX, "") \
    NODE_KIND(CHAIN, "") \
    NODE_KIND(POSTFIX, "") \
    NODE_KIND(RANGE, "range") \
    NODE_KIND(MATRIX, "") \
    NODE_KIND(CELL, "") \
    NODE_KIND(ROW, "") \
    NODE_KIND(REFERENCE, "") \
    NODE_KIND(ARGUMENTS, "") \
    NODE_KIND(BRACES, "") \
    NODE_KIND(FIELD, "") \
    NODE_KIND(DYNAMIC_FIELD, "") \
    NODE_KIND(HANDLE, "") \
    NODE_KIND(ANONYMOUS, "@") \
    NODE_KIND(EXPRESSION, "") \
    NODE_KIND(ASSIGN, "=") \
    NODE_KIND(MULTI_ASSIGN, "=") \
    NODE_KIND(TARGETS, "") \
    NODE_KIND(COMMAND, "command") \
    NODE_KIND(WORD, "") \
    NODE_KIND(SYSTEM, "system") \
    NODE_KIND(IF, "if") \
    NODE_KIND(BRANCH, "branch") \
    NODE_KIND(ELSE, "else") \
    NODE_KIND(FOR, "for") \
    NODE_KIND(WHILE, "while") \
    NODE_KIND(DO_UNTIL, "do") \
    NODE_KIND(SWITCH, "switch") \
    NODE_KIND(CASE, "case") \
    NODE_KIND(OTHERWISE, "otherwise") \
    NODE_KIND(TRY, "try") \
    NODE_KIND(UNWIND, "unwind") \
    NODE_KIND(GLOBAL, "global") \
    NODE_KIND(PERSISTENT, "persistent") \
    NODE_KIND(BREAK, "break") \
    NODE_KIND(CONTINUE, "continue") \
    NODE_KIND(RETURN, "return") \
    NODE_KIND(FUNCTION, "function") \
    NODE_KIND(OUTPUTS, "outputs") \
    NODE_KIND(PARAMETERS, "parameters") \
    NODE_KIND(DEFAULT, "default") \
    NODE_KIND(ARGUMENT_BLOCK, "arguments") \
    NODE_KIND(ARGUMENT, "argument") \
    NODE_KIND(COMMENT, "comment") \
    NODE_KIND(BAD, "bad") \
    NODE_KIND(BLOCK, "block") \
    NODE_KIND(FILE, "file")
// clang-format on
enum NodeKind : uint8_t {
#define NODE_KIND(name, word) NODE_##name,
    NODE_KIND_TABLE
#undef NODE_KIND
        NODE_KINDS
};

enum NodeFlag : uint16_t {
    BLANK_BEFORE = 1 << 0,     /* empty lines stand in front of the statement or comment */
    PRINTS = 1 << 1,           /* no semicolon ends the statement: its value is displayed */
    TRAILING = 1 << 2,         /* the comment stands after code on its line: on the last line of
                                  the statement before it here; as first child of a block (after
                                  INSIDE ones), on the line of the block's head */
    INSIDE = 1 << 3,           /* the comment stands inside the statement that follows it; at the
                                  head of a block, inside the block's head */
    IN_BLOCK_COMMENT = 1 << 4, /* the comment is a line between %{ and %} */
    NUMBER_INTEGER = 1 << 5,   /* digits only */
    NUMBER_IMAGINARY = 1 << 6,
    DOUBLE_QUOTED = 1 << 7,
    PARALLEL = 1 << 8,
    HAS_IDENTIFIER = 1 << 9,
    CLOSED_BY_END = 1 << 10,
    HAS_CHECKS = 1 << 11,
    REPEATING = 1 << 12,
    FOR_OUTPUTS = 1 << 13,
    KEEPS_VARIABLE = 1 << 14,
    IS_OPERAND = 1 << 14, /* REFERENCE: of an operator, a condition or an index, as no cell is */
    IS_USED_AS_CELL = 1 << 13, /* REFERENCE: it is assigned to a variable that braces follow or that
                                  is asked whether it is a cell, or is asked itself */
    GIVES_CELL = 1 << 15, /* an argument: a cell is given where elements of an array are taken */
    HAS_GAP = 1 << 15 /* nothing stands between two commas of the ROW, or in front of the first */
};

struct Node {
    NodeKind kind;
    OperatorId op;
    OperatorId joint;   /* how it joins the sibling before it in a CHAIN; else OPERATOR_NONE */
    bool is_given_away; /* NAME or REFERENCE as the value of an assignment, after which what it held
                           is the target's alone (names/givings.h) */
    uint16_t flags;     /* of NodeFlag */
    uint16_t value;     /* what its value may be (tree/value.h); 0: nothing is known */
    uint32_t offset;    /* place in the source: first byte, from 0, and number of bytes */
    uint32_t length;
    union {
        const char *text;  /* null where the kind has none */
        Scope *scope;      /* PARAMETERS, FILE: null before the names are settled */
        uintptr_t results; /* RETURN, BLOCK of a function: the outputs after so many surely have no
                             value there; 0: not known */
        Region *region;    /* FOR, WHILE, DO_UNTIL, TRY, UNWIND: null before its values are
                              traced */
    };
    union {
        Node *first_child; /* null for none */
        Symbol *symbol;    /* NAME, HANDLE: null before the names are settled */
    };
    Node *next; /* following sibling, or null */
};
static_assert(sizeof(void *) != 8 || sizeof(Node) == 40, "trees are large: nodes are small");

inline uint32_t end_of(const Node *node) { return node->offset + node->length; }
inline bool has_flag(const Node *node, NodeFlag flag) { return (node->flags & flag) != 0; }
/* Whether the kind has no children: its second union holds a symbol. */
inline bool is_named(const Node *node) {
    return node->kind == NODE_NAME || node->kind == NODE_HANDLE;
}
/* The last selector of a REFERENCE. */
Node *last_selector(const Node *reference);
/* How deep in a variable the value of a REFERENCE or a NAME lies: its selectors but those in
 * parentheses. */
uint32_t depth_of(const Node *reference);
/* Whether a selector of a target may add a row or fill a column: x(end+1, :), x(:, k), which an
 * array without elements must have no row for. */
bool grows_in_plane(const Node *selector);
/* Child number n, from 1; there are as many. */
Node *nth_child(const Node *node, int n);
/* The first child of a kind, which there is. */
Node *child_of_kind(const Node *node, NodeKind kind);
/* The first argument in function(arguments) and nothing more; null for another expression, and for
 * none. What the name stands for is not asked. */
Node *arguments_of_call(const Node *expression, const char *function);
/* Whether an END is among the node and those inside of it. */
bool has_end_inside(const Node *node);
/* Whether two expressions or selectors are written alike, but for blanks and comments; never of
 * anonymous functions. */
bool is_same_tree(const Node *one, const Node *other);
/* A colon among arguments, or the text ':', which an index takes for one. */
inline bool is_colon(const Node *argument) {
    if (argument->kind == NODE_COLON) return true;
    return argument->kind == NODE_STRING && argument->text[0] == ':' && argument->text[1] == '\0';
}
/* The element that a MATRIX or CELL has alone; null where there are none or several. */
const Node *single_element(const Node *literal);
/* Whether it is []. */
inline bool is_empty_matrix(const Node *node) {
    return node->kind == NODE_MATRIX && !node->first_child;
}
/* What stands in the parentheses around it; itself without any. */
inline const Node *without_parens(const Node *node) {
    while (node->kind == NODE_PARENS) node = node->first_child;
    return node;
}
inline Node *first_child(const Node *node) { return is_named(node) ? nullptr : node->first_child; }
inline Node *second_child(const Node *node) {
    assert(first_child(node));
    return node->first_child->next;
}
inline Node *third_child(const Node *node) {
    assert(second_child(node));
    return node->first_child->next->next;
}
/* The node, or the first one after it that is no comment; null for none. */
inline const Node *next_statement(const Node *node) {
    while (node && node->kind == NODE_COMMENT) node = node->next;
    return node;
}
