// Texts of binary operators.
#include "translate/binary_text.h"

#include <assert.h>
#include <string.h>

#include "support/allocation.h"
#include "translate/operators.h"
#include "translate/text_forms.h"

namespace {

// A text in its block: its length, and the bytes that are free on both sides of it and its NUL.
struct TextRoom {
    size_t before;
    size_t length;
    size_t behind;
};

// What new_binary_expr makes.
struct BinaryExpr {
    mExpr expr;
    TextRoom room;
};

bool is_binary(const mExpr *expr) {
    return (expr->kind >= OP_DIVIDE && expr->kind <= OP_DOT_POWER) ||
           (expr->kind >= OP_AND && expr->kind <= OP_GE);
}

TextRoom room_of(const mExpr *operand) {
    if (is_binary(operand)) return reinterpret_cast<const BinaryExpr *>(operand)->room;
    return {0, strlen(operand->text), 0};
}

size_t total_length(std::initializer_list<const char *> pieces) {
    size_t length = 0;
    for (const char *piece : pieces) length += strlen(piece);
    return length;
}

void copy_pieces(char *to, std::initializer_list<const char *> pieces) {
    for (const char *piece : pieces) {
        size_t length = strlen(piece);
        memcpy(to, piece, length);
        to += length;
    }
}

BinaryExpr *new_record(size_t text_size) {
    return static_cast<BinaryExpr *>(AllocKept(sizeof(BinaryExpr) + text_size));
}

// A record with a copy of the left operand's text that has the room needed, and as much again as
// the new text is long when the operand is an operator too: a chain.
BinaryExpr *new_roomy_record(const mExpr *left, TextRoom *room, size_t head, size_t tail) {
    size_t spare = is_binary(left) ? head + room->length + tail : 0;
    room->before = head + (head > 0 ? spare : 0);
    room->behind = tail + spare;
    BinaryExpr *binary = new_record(room->before + room->length + room->behind + 1);
    char *text = reinterpret_cast<char *>(binary + 1) + room->before;
    memcpy(text, left->text, room->length);
    binary->expr.text = text;
    return binary;
}

}  // namespace

mExpr *new_binary_expr(int id, int scalar, const mExpr *left,
                       std::initializer_list<const char *> head,
                       std::initializer_list<const char *> tail) {
    TextRoom room = room_of(left);
    size_t head_length = total_length(head);
    size_t tail_length = total_length(tail);
    BinaryExpr *binary;
    if (is_binary(left) && room.before >= head_length && room.behind >= tail_length) {
        binary = new_record(0);
        binary->expr.text = left->text;
    } else {
        binary = new_roomy_record(left, &room, head_length, tail_length);
    }
    assert(room.before >= head_length && room.behind >= tail_length);
    char *middle = const_cast<char *>(binary->expr.text);
    copy_pieces(middle - head_length, head);
    copy_pieces(middle + room.length, tail);
    middle[room.length + tail_length] = '\0';
    binary->expr = {id, middle - head_length, scalar, nullptr};
    binary->room = {room.before - head_length, head_length + room.length + tail_length,
                    room.behind - tail_length};
    return &binary->expr;
}
