// Texts of binary operators.
#include "translate/binary_text.h"

#include <assert.h>
#include <string.h>

#include "support/allocation.h"
#include "translate/operators.h"
#include "translate/text_forms.h"

namespace {

// A text in its block, of which the bytes on both sides of it are free.
struct TextSpace {
    char *start;  // of the block
    size_t length;
    char *end;  // of the block
};

// What new_binary_expr makes.
struct BinaryExpr {
    mExpr expr;
    TextSpace space;
};

bool is_binary(const mExpr *expr) {
    return (expr->kind >= OP_DIVIDE && expr->kind <= OP_DOT_POWER) ||
           (expr->kind >= OP_AND && expr->kind <= OP_GE);
}

const TextSpace *space_of(const mExpr *operand) {
    return is_binary(operand) ? &reinterpret_cast<const BinaryExpr *>(operand)->space : nullptr;
}

size_t total_length(std::initializer_list<const char *> pieces) {
    size_t length = 0;
    for (const char *piece : pieces)
        if (*piece) length += strlen(piece);  // most are empty
    return length;
}

void write_pieces(Writer *to, std::initializer_list<const char *> pieces) {
    for (const char *piece : pieces) {
        if (*piece) write_text(to, piece);
    }
}

// Whether head and tail fit around the text of a chain's record.
bool has_space(const mExpr *left, const TextSpace *space, size_t head, size_t tail) {
    size_t before = static_cast<size_t>(left->text - space->start);
    const char *nul = left->text + space->length;
    return before >= head && static_cast<size_t>(space->end - nul) > tail;
}

BinaryExpr *new_record(size_t text_size) {
    return static_cast<BinaryExpr *>(AllocKept(sizeof(BinaryExpr) + text_size));
}

// A record around the text of its left operand, whose space it takes over.
BinaryExpr *take_text(const mExpr *left, const TextSpace *space) {
    BinaryExpr *binary = new_record(0);
    binary->expr.text = left->text;
    binary->space = *space;
    return binary;
}

// A record with a copy of the left operand's text that has the space needed, and as much again as
// the new text is long when the operand is an operator too: a chain.
BinaryExpr *copy_text(const mExpr *left, size_t head, size_t tail) {
    size_t length = strlen(left->text);
    size_t spare = is_binary(left) ? head + length + tail : 0;
    size_t before = head + (head > 0 ? spare : 0);
    size_t size = before + length + tail + spare + 1;
    BinaryExpr *binary = new_record(size);
    char *start = reinterpret_cast<char *>(binary + 1);
    Writer to = {start + before, start + size};
    binary->expr.text = to.at;
    write_bytes(&to, left->text, length);
    binary->space = {start, length, start + size};
    return binary;
}

}  // namespace

mExpr *new_binary_expr(int id, int scalar, const mExpr *left,
                       std::initializer_list<const char *> head,
                       std::initializer_list<const char *> tail) {
    const TextSpace *space = space_of(left);
    size_t head_length = total_length(head);
    size_t tail_length = total_length(tail);
    bool is_taken = space && has_space(left, space, head_length, tail_length);
    BinaryExpr *binary =
        is_taken ? take_text(left, space) : copy_text(left, head_length, tail_length);
    char *middle = const_cast<char *>(binary->expr.text);
    char *text = middle - head_length;
    char first = *middle;  // where the head ends
    assert(text >= binary->space.start);
    Writer before = {text, middle + 1};
    write_pieces(&before, head);
    *middle = first;
    Writer after = {middle + binary->space.length, binary->space.end};
    write_pieces(&after, tail);
    binary->expr = {id, text, scalar, nullptr};
    binary->space.length += head_length + tail_length;
    return &binary->expr;
}
