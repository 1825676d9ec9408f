/* Expression records. An expression is translated as soon as the parser reduces it: its record
 * carries finished host text, from which the enclosing expression's builder composes its own.
 *
 * Records and texts are kept parts of tracked blocks, or constants, and live until the run ends; a
 * text may be shared between records. Builders read their operands and never change them, with one
 * exception: the text of a chain of operators grows in place (binary_text.h). */
#pragma once

#include <stddef.h>
#include <stdint.h>

#include <initializer_list>

#include "support/allocation.h"

/* What a record stands for. Records of operators have the operator's id (operators.h) as their
 * kind.
 *
 *   kind             text                       scalar  range     built by
 *   EXPR_STRING      double-quoted string       1       unused    new_node, new_dotstring
 *   EXPR_INTEGER     digits; "-1" for an end    1       unused    new_node
 *   EXPR_REAL        the number                 1       unused    new_node
 *   EXPR_IMAGINARY   the number times I         1       unused    new_node
 *   EXPR_NAME        translated name, or args   0       unused    new_node, new_cell_node
 *   EXPR_RANGE       vector of a sequence       0       parts     new_seq_node
 *   EXPR_RANGE       placeholder of a colon     0       null      new_node
 *   EXPR_MATRIX      constructor call           0       unused    new_matrix_node
 *   EXPR_COMMENT     the comment, or "\n"       0       unused    new_node
 *   EXPR_CALL        call or index              0       unused    new_function_node, new_cell_node
 *   an operator id   its host form              *       unused    new_operator1, new_operator2
 *
 *   * see operators.h. An unused field is not set, and nobody reads it. */
enum ExprKind {
    EXPR_STRING = 1,
    EXPR_INTEGER = 2,
    EXPR_REAL = 3,
    EXPR_IMAGINARY = 4,
    EXPR_NAME = 5,
    EXPR_RANGE = 6,
    EXPR_MATRIX = 7,
    EXPR_COMMENT = 8,
    EXPR_CALL = 34
};

struct SourcePosition;
struct Writer;
struct mExpr;

/* The parts of a range. */
struct mRange {
    mExpr *start;
    mExpr *step;                   /* the integer 1 where the source has no step */
    mExpr *stop;                   /* null where the source ends the range with end */
    const SourcePosition *open_at; /* of a range without a stop: where it was read; else null */
};

/* Whether a value is known to be a single one. */
enum { NOT_SCALAR = 0, SCALAR = 1 };

struct mExpr {
    int32_t kind;
    const char *text;
    int32_t scalar; /* SCALAR or NOT_SCALAR */
    mRange *range;
};

/* Cell of a list: arguments, names, command words, comments. The cells of a list may be released
 * before the run ends, the expressions in them may not. */
struct vExpr {
    mExpr *item;
    vExpr *next;
    vExpr *prev; /* not kept in lists of command words */
};

/* A new record, not cleared. */
inline mExpr *alloc_mExpr() { return AllocRecord<mExpr>(); }
/* A new record without a range, whose text of at most size bytes, the NUL among them, the writer
 * writes. It starts out empty and lies after the record in the same block. */
mExpr *alloc_text_mExpr(int kind, int scalar, size_t size, Writer *to);
/* The same with the text of a form (text_forms.h). */
mExpr *new_form_mExpr(int kind, int scalar, const char *form,
                      std::initializer_list<const char *> operands);
/* A new list of one cell. */
inline vExpr *alloc_vExpr(mExpr *item) {
    vExpr *cell = AllocRecord<vExpr>();
    *cell = {item, nullptr, nullptr};
    return cell;
}
/* The list with item in front. */
vExpr *prepend_vExpr(mExpr *item, vExpr *list);
/* Releases the cells of a list, or nothing for null. */
void free_vExpr(vExpr *list);
/* Number of cells; 0 for null. */
int count_vExpr(const vExpr *list);

/* A leaf. The text is what the source has: the contents of a string, a number (an imaginary one
 * without its i or j), a name, a comment with its line end; null for a lone colon (EXPR_RANGE),
 * which gets a placeholder that every builder that accepts a colon replaces. A name is offered to
 * the host for translation; one with a leading @ is a function handle and recorded as called. */
mExpr *new_node(int kind, const char *text);

/* Integers that the grammar supplies, shared: the step of a range without one, and the last
 * position, which the keyword end stands for. */
mExpr *unit_step();
mExpr *last_position();

/* Whether the record is a lone colon; whether it is a range with parts. */
inline bool is_colon(const mExpr *expr) { return expr->kind == EXPR_RANGE && !expr->range; }
inline bool is_range(const mExpr *expr) { return expr->kind == EXPR_RANGE && expr->range; }
/* Whether the range's step is written as 1. */
bool has_unit_step(const mRange *range);
