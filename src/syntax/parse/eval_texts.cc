// Programs in texts.
#include "syntax/parse/eval_texts.h"

#include <assert.h>
#include <string.h>

#include "syntax/scan/spellings.h"
#include "syntax/tree/new_nodes.h"

namespace {

// Texts in texts are read this deep.
constexpr int DEEPEST_TEXT = 8;

SourceLanguage Language;
int Depth;

constexpr char EVAL[] = "eval";

// The arguments of eval(...) and nothing more; null for any other expression.
Node *eval_arguments(const Node *expression) {
    if (expression->kind != NODE_REFERENCE) return nullptr;
    Node *base = expression->first_child;
    bool is_eval = base->kind == NODE_NAME && strcmp(base->text, EVAL) == 0;
    Node *arguments = base->next;
    bool is_call = is_eval && arguments->kind == NODE_ARGUMENTS && !arguments->next;
    return is_call ? arguments->first_child : nullptr;
}

// The only row of a matrix, if all its elements are texts.
const Node *row_of_texts(const Node *matrix) {
    const Node *row = matrix->kind == NODE_MATRIX ? matrix->first_child : nullptr;
    if (!row || row->next) return nullptr;
    for (const Node *element = row->first_child; element; element = element->next)
        if (element->kind != NODE_STRING) return nullptr;
    return row;
}

// The characters of 'text' or of ['te' 'xt']; null for what is no literal.
const char *literal_text(const Node *argument) {
    if (argument->kind == NODE_STRING) return argument->text;
    const Node *row = row_of_texts(argument);
    if (!row) return nullptr;
    size_t length = 0;
    for (const Node *element = row->first_child; element; element = element->next)
        length += strlen(element->text);
    char *text = static_cast<char *>(take_bytes(length + 1));
    char *at = text;
    for (const Node *element = row->first_child; element; element = element->next)
        at = stpcpy(at, element->text);
    return text;
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

// The tree of a text, at the place of a call; null where it cannot stand there.
Node *tree_of(const char *text, const Node *call) {
    if (!text || Depth == DEEPEST_TEXT) return nullptr;
    Node *file = parse_text(text, Language);
    if (!file || !is_self_contained(file, false)) return nullptr;
    Depth++;
    replace_calls(file);
    Depth--;
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
    Node *copy = new_node(statement->kind, statement->offset);
    *copy = *statement;
    copy->flags &= ~uint16_t(BLANK_BEFORE | INSIDE);
    copy->next = nullptr;
    argument->next = nullptr;
    return copy;
}

// eval(tried, handler)
void put_try(Node *statement, Node *arguments) {
    const char *tried = literal_text(arguments);
    const Node *handler = tree_of(literal_text(arguments->next), statement);
    const Node *body = tried ? tree_of(tried, statement) : nullptr;
    if (!handler || (tried && (!body || !body->first_child))) return;
    Node *first = body ? body->first_child : without_handler(statement, arguments);
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
    const Node *file = tree_of(literal_text(arguments), statement);
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
    const Node *file = arguments->next ? nullptr : tree_of(literal_text(arguments), call);
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

// What has been put is not looked at again: its own calls are replaced.
void replace_calls(Node *parent) {
    for (Node *node = first_child(parent); node;) {
        Node *next = node->next;
        bool is_statement = node->kind == NODE_EXPRESSION;
        Node *expression = is_statement ? node->first_child : node;
        if (Node *arguments = eval_arguments(expression)) {
            replace_calls(expression);
            if (is_statement) {
                replace_statement(node, arguments);
            } else {
                replace_value(node, arguments, parent);
            }
        } else {
            replace_calls(node);
        }
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

void put_eval_texts(Node *file, SourceLanguage language) {
    if (is_defined(file)) return;
    Language = language;
    Depth = 0;
    replace_calls(file);
}
