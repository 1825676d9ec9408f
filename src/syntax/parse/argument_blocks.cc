// Blocks of arguments at the head of a function's body. Of their checks only a flag is kept.
#include <string.h>

#include "syntax/parse/expressions.h"
#include "syntax/parse/open_blocks.h"
#include "syntax/parse/recovery.h"
#include "syntax/parse/statements.h"
#include "syntax/scan/class_table.h"
#include "syntax/scan/scan_comments.h"

namespace {

bool is_at_line_end(const char *at) {
    return is_line_end(*at) || class_of(*at) == BYTE_COMMENT || at == Scan.end;
}

// name, or options.name
Node *parse_argument_name() {
    Node *name = take_name();
    if (Current.kind != TOKEN_FIELD) return name;
    Node *reference = new_parent(NODE_REFERENCE, name);
    name->next = take_leaf(NODE_FIELD);
    return finish(reference);
}

// (sizes) class {validators}; whether there was any.
bool skip_checks() {
    uint32_t start = Current.start;
    if (Current.kind == TOKEN_OPEN_PAREN) parse_arguments();
    if (Current.kind == TOKEN_NAME) {
        do advance();
        while (Current.kind == TOKEN_FIELD);
    }
    if (Current.kind == TOKEN_OPEN_BRACE) parse_literal();
    return Current.start != start;
}

void expect_line_end() {
    switch (Current.kind) {
        case TOKEN_NEWLINE:
        case TOKEN_COMMENT:
        case TOKEN_SEMICOLON:
        case TOKEN_COMMA:
        case TOKEN_END:
        case TOKEN_END_OF_FILE: return;
        case TOKEN_QUESTION: return syntax_error(CLASS_QUERY, Current.start, Current.end);
        default: unexpected_token("the end of the argument's line");
    }
}

Node *parse_argument() {
    Node *argument = new_node(NODE_ARGUMENT, Current.start);
    StatementStart = Current.start;
    if (Current.kind != TOKEN_NAME) unexpected_token("the name of an argument");
    if (Failed) return recover_statement(argument->offset);
    Node *name = argument->first_child = parse_argument_name();
    if (skip_checks()) argument->flags |= HAS_CHECKS;
    if (Current.kind == TOKEN_ASSIGN) {
        advance();
        name->next = parse_expression();
    }
    expect_line_end();
    return Failed ? recover_statement(argument->offset) : finish(argument);
}

// (Repeating), (Output)
void take_attributes(Node *block) {
    if (Current.kind != TOKEN_OPEN_PAREN) return;
    while (Current.kind != TOKEN_CLOSE_PAREN && Current.kind != TOKEN_NEWLINE) {
        if (Current.kind == TOKEN_NAME && strcmp(Current.text, "Repeating") == 0)
            block->flags |= REPEATING;
        if (Current.kind == TOKEN_NAME && strcmp(Current.text, "Output") == 0)
            block->flags |= FOR_OUTPUTS;
        advance();
    }
    advance();
}

void append_argument_part(NodeList *list, Node *block) {
    bool is_comment = Current.kind == TOKEN_COMMENT;
    Node *part = is_comment ? new_comment() : parse_argument();
    if (is_comment) advance();
    append_all(list, &Scan.comments);
    append(list, part);
    if (part->kind == NODE_BAD) block->kind = NODE_BAD;
}

void parse_argument_list(Node *block) {
    NodeList list;
    while (Current.kind != TOKEN_END && Current.kind != TOKEN_END_OF_FILE) {
        bool separates = Current.kind == TOKEN_NEWLINE || Current.kind == TOKEN_SEMICOLON ||
                         Current.kind == TOKEN_COMMA;
        if (separates) {
            advance();
        } else if (is_keyword(Current.kind)) {
            break;
        } else {
            append_argument_part(&list, block);
        }
    }
    block->first_child = list.first;
}

}  // namespace

bool begins_argument_block() {
    if (Current.kind != TOKEN_NAME || spelling_of(Current.text)->soft != SOFT_ARGUMENTS)
        return false;
    if (!is_in_function_body()) return false;
    const char *at = skip_blanks(Scan.at);
    if (*at != '(') return is_at_line_end(at);
    at = skip_blanks(at + 1);
    while (is_word(*at) || *at == ',' || is_blank(*at)) at++;
    return *at == ')' && is_at_line_end(skip_blanks(at + 1));
}

Node *parse_argument_block() {
    Node *block = new_node(NODE_ARGUMENT_BLOCK, Current.start);
    Scan.openers++;
    if (!can_open_block()) return skip_source();
    open_block(TOKEN_NAME, Current.start, closer(TOKEN_END));
    advance();
    take_attributes(block);
    parse_argument_list(block);
    if (Current.kind != TOKEN_END) block->kind = NODE_BAD;
    close_block(TOKEN_END, block);
    return finish(block);
}
