// Texts that a program puts together, and what is read from them.
#include "syntax/parse/composed_texts.h"

#include <assert.h>
#include <stdio.h>
#include <stdlib.h>
#include <string.h>

#include "diagnose/messages.h"
#include "syntax/scan/spellings.h"
#include "syntax/tree/new_nodes.h"

namespace {

// The name of a piece in the text is this, its number and a '_'.
constexpr char STAND_IN[] = "eval_piece_";
constexpr size_t STAND_IN_LENGTH = sizeof STAND_IN - 1;
constexpr size_t LONGEST_STAND_IN = STAND_IN_LENGTH + 12;

struct Piece {
    const Node *text;       // the expression of its characters
    const Node *number;     // of the number that they stand for, or null
    const char *taken_for;  // what has been made of it, or null so far
};

// Literal characters, or a piece.
struct Part {
    const char *characters;
    uint32_t piece;  // from 1; 0 for characters
    Part *next;
};

}  // namespace

struct ComposedText {
    Part *first;
    Part *last;
    Piece *pieces;  // those that are there come first
    uint32_t count;
    uint32_t most;  // pieces that there is space for
    const char *text;
};

namespace {

// READING AN EXPRESSION

void append_part(ComposedText *composed, const char *characters, uint32_t piece) {
    Part *part = static_cast<Part *>(take_bytes(sizeof(Part)));
    *part = {characters, piece, nullptr};
    (composed->last ? composed->last->next : composed->first) = part;
    composed->last = part;
}

bool append_characters(ComposedText *composed, const char *characters) {
    append_part(composed, characters, 0);
    return !strstr(characters, STAND_IN);
}

void append_piece(ComposedText *composed, const Node *text, const Node *number) {
    if (composed->count == composed->most) {
        composed->most = composed->most * 2 + 4;
        auto *pieces = static_cast<Piece *>(take_bytes(composed->most * sizeof(Piece)));
        if (composed->count) memcpy(pieces, composed->pieces, composed->count * sizeof(Piece));
        composed->pieces = pieces;
    }
    composed->pieces[composed->count++] = {text, number, nullptr};
    append_part(composed, nullptr, composed->count);
}

// c{:} and c{1:2} are several values.
bool may_be_list(const Node *node) {
    if (node->kind != NODE_REFERENCE) return false;
    const Node *selector = last_selector(node);
    if (selector->kind != NODE_BRACES) return false;
    for (const Node *index = selector->first_child; index; index = index->next)
        if (index->kind == NODE_COLON || index->kind == NODE_RANGE) return true;
    return false;
}

// The number in num2str(number), int2str(number) or mat2str(number), or null.
const Node *number_in(const Node *text) {
    for (const char *function : {"num2str", "int2str", "mat2str"}) {
        const Node *argument = arguments_of_call(text, function);
        if (argument) return argument->next ? nullptr : argument;
    }
    return nullptr;
}

bool read_piece(ComposedText *composed, const Node *node) {
    if (may_be_list(node)) return false;
    switch (node->kind) {
        case NODE_NAME:
        case NODE_REFERENCE:
        case NODE_PARENS:
        case NODE_CHAIN: append_piece(composed, node, number_in(node)); return true;
        default: return false;
    }
}

Node *new_call(const char *function, Node *argument) {
    Node *name = new_text_node(NODE_NAME, 0, 0, intern(function));
    name->next = new_parent(NODE_ARGUMENTS, argument);
    return new_parent(NODE_REFERENCE, name);
}

// sprintf('%d', argument), at the place of the argument.
Node *new_conversion(const char *conversion, const Node *argument) {
    Node *format = new_text_node(NODE_STRING, 0, 0, conversion);
    format->next = copy_node(argument);
    Node *call = new_call("sprintf", format);
    call->offset = argument->offset;
    call->length = argument->length;
    return call;
}

// One '%...' or '\...' of a format; *arguments moves on.
bool read_directive(ComposedText *composed, const char *at, const Node **arguments) {
    if (strncmp(at, "\\n", 2) == 0) return append_characters(composed, "\n");
    if (strncmp(at, "%%", 2) == 0) return append_characters(composed, "%");
    const Node *argument = *arguments;
    if (*at != '%' || !argument || may_be_list(argument)) return false;
    *arguments = argument->next;
    if (at[1] == 's') return read_piece(composed, argument);
    if (at[1] != 'd' && at[1] != 'i' && at[1] != 'g') return false;
    append_piece(composed, new_conversion(keep_bytes(at, 2), argument), argument);
    return true;
}

// sprintf with a format that is a literal, and has as many conversions as there are arguments.
bool read_format(ComposedText *composed, const Node *format) {
    if (format->kind != NODE_STRING) return false;
    const Node *arguments = format->next;
    const char *at = format->text;
    while (*at) {
        size_t plain = strcspn(at, "%\\");
        if (plain && !append_characters(composed, keep_bytes(at, plain))) return false;
        at += plain;
        if (*at && !read_directive(composed, at, &arguments)) return false;
        if (*at) at += 2;
    }
    return !arguments;
}

bool read_text(ComposedText *composed, const Node *node) {
    if (node->kind == NODE_STRING) return append_characters(composed, node->text);
    if (const Node *format = arguments_of_call(node, "sprintf"))
        return read_format(composed, format);
    if (node->kind != NODE_MATRIX) return read_piece(composed, node);
    const Node *row = node->first_child;
    if (!row || row->next) return false;
    for (const Node *element = row->first_child; element; element = element->next)
        if (!read_text(composed, element)) return false;
    return true;
}

size_t length_of(const Part *part) {
    return part->piece ? LONGEST_STAND_IN : strlen(part->characters);
}

void join_parts(ComposedText *composed) {
    size_t length = 0;
    for (const Part *part = composed->first; part; part = part->next) length += length_of(part);
    char *text = static_cast<char *>(take_bytes(length + 1));
    char *at = text;
    *at = '\0';
    for (const Part *part = composed->first; part; part = part->next) {
        if (part->piece) {
            at += sprintf(at, "%s%u_", STAND_IN, part->piece);
        } else {
            at = stpcpy(at, part->characters);
        }
    }
    composed->text = text;
}

// PUTTING THE PIECES INTO A TREE

struct Placing {
    const ComposedText *composed;
    bool is_spoilt;  // a piece stands in two places
};

Node *copy_tree(const Node *node) {
    Node *copy = copy_node(node);
    NodeList children;
    for (const Node *child = first_child(node); child; child = child->next)
        append(&children, copy_tree(child));
    if (children.first) copy->first_child = children.first;
    return copy;
}

// A name that stands for a piece, as the text shows it.
struct StandIn {
    const char *at;   // null for none
    const char *end;  // after it
    Piece *piece;
};

// The first one in a text. What the program itself writes alike means no piece.
StandIn next_stand_in(const Placing *placing, const char *text) {
    const ComposedText *composed = placing->composed;
    for (; (text = strstr(text, STAND_IN)); text++) {
        char *end;
        unsigned long number = strtoul(text + STAND_IN_LENGTH, &end, 10);
        bool is_piece = number > 0 && number <= composed->count && *end == '_';
        if (is_piece) return {text, end + 1, &composed->pieces[number - 1]};
    }
    return {nullptr, nullptr, nullptr};
}

bool has_stand_in(const Placing *placing, const char *text) {
    return next_stand_in(placing, text).at != nullptr;
}

// The piece whose name is the whole text, or null.
Piece *piece_named(const Placing *placing, const char *text) {
    StandIn found = next_stand_in(placing, text);
    return found.at == text && *found.end == '\0' ? found.piece : nullptr;
}

void place(Placing *placing, Piece *piece, const char *taken_for) {
    if (piece->taken_for) placing->is_spoilt = true;
    piece->taken_for = taken_for;
}

// Whether a piece in the text is a number.
bool has_number(const Placing *placing, const char *text) {
    StandIn found = next_stand_in(placing, text);
    for (; found.at; found = next_stand_in(placing, found.end))
        if (found.piece->number) return true;
    return false;
}

Node *new_string(const char *start, const char *end) {
    return new_text_node(NODE_STRING, 0, 0, keep_bytes(start, static_cast<size_t>(end - start)));
}

// The text with its pieces: an expression.
Node *new_text(Placing *placing, const char *text, const char *taken_for) {
    NodeList parts;
    StandIn found = next_stand_in(placing, text);
    for (; found.at; found = next_stand_in(placing, text)) {
        if (found.at != text) append(&parts, new_string(text, found.at));
        place(placing, found.piece, taken_for);
        append(&parts, copy_tree(found.piece->text));
        text = found.end;
    }
    if (*text || !parts.first) append(&parts, new_string(text, text + strlen(text)));
    if (parts.first == parts.last) return parts.first;
    return new_parent(NODE_MATRIX, new_parent(NODE_ROW, parts.first));
}

bool is_operation(const Node *node) {
    return node->kind == NODE_CHAIN || node->kind == NODE_PREFIX || node->kind == NODE_RANGE;
}

// The node becomes the value, in its place among its siblings.
void put_value(Node *node, Node *value) {
    if (is_operation(value)) value = new_parent(NODE_PARENS, value);
    OperatorId joint = node->joint;
    Node *next = node->next;
    *node = *value;
    node->joint = joint;
    node->next = next;
}

// 'load FILE' as load('FILE')
void put_call_of_command(Node *command, Placing *placing) {
    Node *name = command->first_child;
    NodeList arguments;
    for (Node *word = name->next; word; word = word->next)
        append(&arguments, new_text(placing, word->text, "a word of the command"));
    Node *call = new_call(name->text, arguments.first);
    command->kind = NODE_EXPRESSION;
    command->first_child = call;
}

void put_system_call(Node *statement, Placing *placing) {
    const char *words = statement->text;
    statement->kind = NODE_EXPRESSION;
    statement->text = nullptr;
    statement->first_child = new_call("system", new_text(placing, words, "words of the command"));
}

bool words_have_stand_in(const Node *command, const Placing *placing) {
    for (const Node *word = command->first_child->next; word; word = word->next)
        if (has_stand_in(placing, word->text)) return true;
    return false;
}

// A whole name as a value: the number that the piece shows.
bool put_number(Node *name, Placing *placing) {
    Piece *piece = piece_named(placing, name->text);
    if (!piece || !piece->number) return false;
    place(placing, piece, "this number");
    put_value(name, copy_tree(piece->number));
    return true;
}

// 'do_NAME(arguments)' as feval(['do_' NAME], arguments). With a number in its name it would be
// one of several variables.
bool put_function(Node *reference, Placing *placing) {
    Node *name = reference->first_child;
    Node *arguments = name->next;
    if (arguments->kind != NODE_ARGUMENTS || !arguments->first_child) return false;
    if (has_number(placing, name->text)) return false;
    Node *function = new_text(placing, name->text, "the name of a function");
    function->next = arguments->first_child;
    arguments->first_child = function;
    name->text = intern("feval");
    return true;
}

// '[TEXT]' as str2num(TEXT)
bool put_numbers(Node *matrix, Placing *placing) {
    const Node *element = single_element(matrix);
    if (!element || element->kind != NODE_NAME) return false;
    const Piece *piece = piece_named(placing, element->text);
    if (!piece || piece->number) return false;
    put_value(matrix, new_call("str2num", new_text(placing, element->text, "numbers")));
    return true;
}

bool put_into(Node *node, Placing *placing, bool is_target);

bool put_into_children(Node *node, Placing *placing, bool are_targets) {
    for (Node *child = first_child(node); child; child = child->next)
        if (!put_into(child, placing, are_targets)) return false;
    return true;
}

// The first child is what is assigned.
bool put_into_assignment(Node *node, Placing *placing) {
    Node *target = node->first_child;
    if (!put_into(target, placing, true)) return false;
    for (Node *child = target->next; child; child = child->next)
        if (!put_into(child, placing, false)) return false;
    return true;
}

bool put_into_reference(Node *reference, Placing *placing, bool is_target) {
    Node *base = reference->first_child;
    if (base->kind == NODE_NAME && has_stand_in(placing, base->text)) {
        if (is_target || !put_function(reference, placing)) return false;
    } else if (!put_into(base, placing, is_target)) {
        return false;
    }
    for (Node *selector = base->next; selector; selector = selector->next)
        if (!put_into(selector, placing, false)) return false;
    return true;
}

void put_field(Node *field, Placing *placing) {
    Node *name = new_text(placing, field->text, "the name of a field");
    field->kind = NODE_DYNAMIC_FIELD;
    field->text = nullptr;
    field->first_child = name;
}

bool has_text(const Node *node) {
    switch (node->kind) {
        case NODE_NUMBER:
        case NODE_STRING:
        case NODE_NAME:
        case NODE_FIELD:
        case NODE_HANDLE:
        case NODE_WORD:
        case NODE_SYSTEM:
        case NODE_COMMENT: return true;
        default: return false;
    }
}

// A node whose own text has a stand-in.
bool put_into_text(Node *node, Placing *placing, bool is_target) {
    switch (node->kind) {
        case NODE_FIELD: put_field(node, placing); return true;
        case NODE_STRING:
            put_value(node, new_text(placing, node->text, "a part of a string"));
            return true;
        case NODE_HANDLE:
            put_value(node, new_call("str2func",
                                     new_text(placing, node->text, "the name of a function")));
            return true;
        case NODE_SYSTEM: put_system_call(node, placing); return true;
        case NODE_NAME: return !is_target && put_number(node, placing);
        default: return false;
    }
}

bool put_into(Node *node, Placing *placing, bool is_target) {
    if (has_text(node))
        return !has_stand_in(placing, node->text) || put_into_text(node, placing, is_target);
    switch (node->kind) {
        case NODE_REFERENCE: return put_into_reference(node, placing, is_target);
        case NODE_ASSIGN:
        case NODE_MULTI_ASSIGN:
        case NODE_FOR: return put_into_assignment(node, placing);
        case NODE_TARGETS:
        case NODE_GLOBAL: return put_into_children(node, placing, true);
        case NODE_COMMAND:
            if (words_have_stand_in(node, placing)) put_call_of_command(node, placing);
            return true;
        case NODE_MATRIX:
            if (put_numbers(node, placing)) return true;
            break;
        default: break;
    }
    return put_into_children(node, placing, false);
}

// WHAT MAY BE EVALUATED TWICE

// A name with parentheses after it may be a call, and change something.
bool is_plain_value(const Node *node) {
    if (node->kind == NODE_REFERENCE) {
        const Node *selector = node->first_child->next;
        if (selector->kind == NODE_ARGUMENTS) return false;
    }
    switch (node->kind) {
        case NODE_HANDLE:
        case NODE_ANONYMOUS: return false;
        default: break;
    }
    for (const Node *child = first_child(node); child; child = child->next)
        if (!is_plain_value(child)) return false;
    return true;
}

}  // namespace

const ComposedText *composed_text(const Node *expression) {
    auto *composed = static_cast<ComposedText *>(take_bytes(sizeof(ComposedText)));
    *composed = {};
    if (!read_text(composed, expression)) return nullptr;
    bool is_unknown = composed->first && composed->first->piece && !composed->first->next;
    if (is_unknown) return nullptr;
    join_parts(composed);
    return composed;
}

const char *text_of(const ComposedText *composed) { return composed->text; }

bool has_no_pieces(const ComposedText *composed) { return composed->count == 0; }

bool is_repeatable(const ComposedText *composed) {
    for (uint32_t k = 0; k < composed->count; k++) {
        const Piece *piece = &composed->pieces[k];
        if (!is_plain_value(piece->number ? piece->number : piece->text)) return false;
    }
    return true;
}

bool put_pieces(Node *file, const ComposedText *composed) {
    if (composed->count == 0) return true;
    Placing placing = {composed, false};
    if (!put_into_children(file, &placing, false) || placing.is_spoilt) return false;
    for (uint32_t k = 0; k < composed->count; k++)
        if (!composed->pieces[k].taken_for) return false;
    return true;
}

void report_pieces(const ComposedText *composed, Source *source) {
    for (uint32_t k = 0; k < composed->count; k++) {
        const Piece *piece = &composed->pieces[k];
        const Node *place = piece->text;
        report(COMPOSED_TEXT, source, place->offset, place->length, {piece->taken_for});
    }
}
