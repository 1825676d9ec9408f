// Programs in texts.
#include "syntax/parse/eval_texts.h"

#include <assert.h>
#include <string.h>

#include "syntax/parse/composed_texts.h"
#include "syntax/scan/spellings.h"
#include "syntax/tree/new_nodes.h"

namespace {

// Texts in texts are read this deep.
constexpr int DEEPEST_TEXT = 8;

SourceLanguage Language;
Source *Text;
int Depth;
// The statement in front of the one that is looked at, if that runs next after it.
const Node *Before;

constexpr char EVAL[] = "eval";

// The statement that has given the variable its value, if it is the one before.
const ComposedText *text_of_variable(const Node *name) {
    const Node *before = Before;
    if (!before || before->kind != NODE_ASSIGN || before->op != OPERATOR_NONE) return nullptr;
    const Node *target = before->first_child;
    if (target->kind != NODE_NAME || strcmp(target->text, name->text) != 0) return nullptr;
    const ComposedText *text = composed_text(target->next);
    return text && is_repeatable(text) ? text : nullptr;
}

// What a text in a text is put together from has no place in the source.
const ComposedText *text_in(const Node *argument) {
    if (Depth == DEEPEST_TEXT) return nullptr;
    const ComposedText *text =
        argument->kind == NODE_NAME ? text_of_variable(argument) : composed_text(argument);
    return text && (Depth == 0 || has_no_pieces(text)) ? text : nullptr;
}

// Whether a statement means the same outside of a text.
bool is_self_contained(const Node *node, bool in_loop) {
    switch (node->kind) {
        case NODE_RETURN:
        case NODE_FUNCTION:
        case NODE_ARGUMENT_BLOCK:
        case NODE_PERSISTENT:
        case NODE_BAD: return false;
        case NODE_BREAK:
        case NODE_CONTINUE: return in_loop;
        case NODE_FOR:
        case NODE_WHILE:
        case NODE_DO_UNTIL: in_loop = true; break;
        default: break;
    }
    for (const Node *child = first_child(node); child; child = child->next)
        if (!is_self_contained(child, in_loop)) return false;
    return true;
}

void move_to(Node *node, const Node *call) {
    node->offset = call->offset;
    node->length = call->length;
    for (Node *child = first_child(node); child; child = child->next) move_to(child, call);
}

void replace_calls(Node *parent);

bool is_literal(const Node *argument) {
    const ComposedText *text = text_in(argument);
    return text && has_no_pieces(text);
}

// The tree of the text of an argument, at the place of a call; null where it cannot stand there.
Node *tree_of(const Node *argument, const Node *call) {
    const ComposedText *text = text_in(argument);
    Node *file = text ? parse_text(text_of(text), Language) : nullptr;
    if (!file || !is_self_contained(file, false)) return nullptr;
    Depth++;
    replace_calls(file);
    Depth--;
    if (!put_pieces(file, text)) return nullptr;
    report_pieces(text, Text);
    move_to(file, call);
    return file;
}

Node *last_sibling(Node *node) {
    while (node->next) node = node->next;
    return node;
}

// The statements stand in the place of the one that calls eval.
void put_statements(Node *statement, const Node *file) {
    assert(file->kind == NODE_FILE);
    Node *first = file->first_child;
    last_sibling(first)->next = statement->next;
    uint16_t before = statement->flags & (BLANK_BEFORE | INSIDE);
    *statement = *first;
    statement->flags |= before;
}

Node *new_block(Node *first, const Node *call) {
    Node *block = new_node(NODE_BLOCK, call->offset);
    block->length = call->length;
    block->first_child = first;
    return block;
}

// The statement as it is, without the text of its handler.
Node *without_handler(Node *statement, Node *argument) {
    Node *copy = copy_node(statement);
    copy->flags &= ~uint16_t(BLANK_BEFORE | INSIDE);
    argument->next = nullptr;
    return copy;
}

// eval(tried, handler)
void put_try(Node *statement, Node *arguments) {
    const Node *handler = tree_of(arguments->next, statement);
    if (!handler) return;
    const Node *body = tree_of(arguments, statement);
    bool is_read = body && body->first_child;
    if (!is_read && is_literal(arguments)) return;
    Node *first = is_read ? body->first_child : without_handler(statement, arguments);
    Node *block = new_block(first, statement);
    block->next = new_block(handler->first_child, statement);
    statement->kind = NODE_TRY;
    statement->first_child = block;
}

void replace_statement(Node *statement, Node *arguments) {
    if (arguments->next) {
        if (!arguments->next->next) put_try(statement, arguments);
        return;
    }
    const Node *file = tree_of(arguments, statement);
    if (file && file->first_child) put_statements(statement, file);
}

// Whether an operator beside it would take the value apart.
bool needs_pair(const Node *value, const Node *parent) {
    bool is_operation =
        value->kind == NODE_CHAIN || value->kind == NODE_PREFIX || value->kind == NODE_RANGE;
    return is_operation && parent->kind != NODE_ASSIGN && parent->kind != NODE_MULTI_ASSIGN &&
           parent->kind != NODE_ARGUMENTS;
}

// The value of the text's only statement stands in the place of the call.
void replace_value(Node *call, const Node *arguments, const Node *parent) {
    const Node *file = arguments->next ? nullptr : tree_of(arguments, call);
    const Node *statement = file ? file->first_child : nullptr;
    if (!statement || statement->next || statement->kind != NODE_EXPRESSION) return;
    Node *value = statement->first_child;
    if (needs_pair(value, parent)) {
        call->kind = NODE_PARENS;
        call->first_child = value;
        return;
    }
    Node place = *call;
    *call = *value;
    call->joint = place.joint;
    call->next = place.next;
}

void replace_call(Node *node, Node *arguments, const Node *parent) {
    if (node->kind == NODE_EXPRESSION) {
        replace_statement(node, arguments);
    } else {
        replace_value(node, arguments, parent);
    }
}

bool is_block(const Node *node) { return node->kind == NODE_BLOCK || node->kind == NODE_FILE; }

// Whether all of the statement is evaluated once, before another one.
bool is_simple(const Node *statement) {
    return statement->kind == NODE_EXPRESSION || statement->kind == NODE_ASSIGN ||
           statement->kind == NODE_MULTI_ASSIGN;
}

// What has been put is not looked at again: its own calls are replaced.
void replace_calls(Node *parent) {
    const Node *last = nullptr;
    for (Node *node = first_child(parent); node;) {
        Node *next = node->next;
        if (is_block(parent)) Before = is_simple(node) ? last : nullptr;
        if (node->kind != NODE_COMMENT) last = node;
        Node *expression = node->kind == NODE_EXPRESSION ? node->first_child : node;
        Node *arguments = arguments_of_call(expression, EVAL);
        replace_calls(arguments ? expression : node);
        if (arguments) replace_call(node, arguments, parent);
        node = next;
    }
}

// Whether the source calls something else by that name.
bool is_defined(const Node *file) {
    if (spelling_of_bytes(EVAL, sizeof EVAL - 1)->function) return true;
    for (const Node *node = file->first_child; node; node = node->next)
        if (node->kind == NODE_FUNCTION && strcmp(node->text, EVAL) == 0) return true;
    return false;
}

}  // namespace

void put_eval_texts(Node *file, Source *source, SourceLanguage language) {
    if (is_defined(file)) return;
    Language = language;
    Text = source;
    Depth = 0;
    Before = nullptr;
    replace_calls(file);
}
