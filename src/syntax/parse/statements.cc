// Lists of statements: which rule reads a statement, what ends it, where comments go.
#include "syntax/parse/statements.h"

#include "syntax/parse/commands.h"
#include "syntax/parse/expressions.h"
#include "syntax/parse/open_blocks.h"
#include "syntax/parse/recovery.h"
#include "syntax/parse/steps.h"
#include "syntax/scan/class_table.h"
#include "syntax/scan/scan_comments.h"

namespace {

bool is_word_of(SoftKeyword soft) {
    return Current.kind == TOKEN_NAME && spelling_of(Current.text)->soft == soft;
}

// The word do opens a loop, unless it is used as a name.
bool begins_do_loop() {
    if (!is_word_of(SOFT_DO) || is_variable(spelling_of(Current.text))) return false;
    char next = *skip_blanks(Scan.at);
    if (next == ',') return true;
    switch (class_of(next)) {
        case BYTE_LINE:
        case BYTE_COMMENT:
        case BYTE_SEMICOLON:
        case BYTE_LETTER:
        case BYTE_OPEN: return next != '(' && next != '{';
        default: return false;
    }
}

Node *parse_named_command() {
    if (__builtin_strcmp(Current.text, "import") != 0) return parse_command();
    const char *end = find_line_end(Scan.at);
    syntax_error(IMPORT_COMMAND, Current.start, offset_of(end));
    return new_node(NODE_BAD, Current.start);
}

Node *parse_name_statement(Statement *statement) {
    const Spelling *spelling = spelling_of(Current.text);
    if (is_blank(*Scan.at) && !is_variable(spelling) && is_command()) return parse_named_command();
    return parse_simple(statement);
}

Node *parse_word(NodeKind kind) {
    Node *node = take_leaf(kind);
    node->text = nullptr;
    return node;
}

Node *parse_jump(NodeKind kind) {
    if (!is_in_loop()) {
        const char *word = kind == NODE_BREAK ? "break" : "continue";
        note_error(STRAY_JUMP, Current.start, Current.end, {word});
        kind = NODE_BAD;
    }
    return parse_word(kind);
}

Node *refuse_class() {
    const char *end = find_line_end(Scan.at);
    note_error(CLASS_DEFINITION, Current.start, offset_of(end));
    return skip_source();
}

// A statement of one line, up to what ends it; null when the current token begins a block.
Node *parse_line(Statement *statement) {
    switch (Current.kind) {
        case TOKEN_NAME: return parse_name_statement(statement);
        case TOKEN_GLOBAL: return parse_declaration(NODE_GLOBAL);
        case TOKEN_PERSISTENT: return parse_declaration(NODE_PERSISTENT);
        case TOKEN_BREAK: return parse_jump(NODE_BREAK);
        case TOKEN_CONTINUE: return parse_jump(NODE_CONTINUE);
        case TOKEN_RETURN: return parse_word(NODE_RETURN);
        case TOKEN_NOT:
            if (Scan.language == LANGUAGE_MATLAB && Scan.text[Current.start] == '!')
                return parse_system_command();
            return parse_simple(statement);
        default: return parse_simple(statement);
    }
}

Node *parse_opened_block(Statement *statement) {
    switch (Current.kind) {
        case TOKEN_IF: return parse_if(statement);
        case TOKEN_FOR:
        case TOKEN_PARFOR: return parse_for(statement);
        case TOKEN_WHILE: return parse_while(statement);
        case TOKEN_SWITCH: return parse_switch(statement);
        case TOKEN_TRY: return parse_try(statement);
        case TOKEN_UNWIND: return parse_unwind(statement);
        default: return parse_spmd(statement);
    }
}

// What stands after a statement's last token must end it.
void end_statement(Node *node) {
    switch (Current.kind) {
        case TOKEN_SEMICOLON:
        case TOKEN_COMMA:
        case TOKEN_NEWLINE:
        case TOKEN_COMMENT:
        case TOKEN_END_OF_FILE: break;
        case TOKEN_OPEN_BRACKET:
            unexpected_token(
                "an operator or the end of the statement (an index is written in parentheses)");
            break;
        default:
            if (!is_keyword(Current.kind))
                unexpected_token("an operator or the end of the statement");
    }
    if (Current.kind != TOKEN_SEMICOLON) node->flags |= PRINTS;
}

void append_statement(Statement *statement, Node *node) {
    put_inside_comments(statement);
    node->flags |= statement->flags;
    append(statement->list, node);
}

void parse_line_statement(Statement *statement) {
    Node *node = parse_line(statement);
    end_statement(node);
    if (has_steps()) node = put_steps(statement, node);
    if (Failed) {
        append_statement(statement, recover_statement(statement->start));
        return;
    }
    append_statement(statement, node);
    if (Current.kind == TOKEN_SEMICOLON || Current.kind == TOKEN_COMMA) advance();
}

// A file that begins with a function may have functions without an end; a script may not.
void settle_kind_of_file() {
    if (Parsing.ends != ENDS_UNKNOWN || Parsing.blocks > 0) return;
    if (Current.kind == TOKEN_FUNCTION) return;
    Parsing.ends = WITH_ENDS;
    Parsing.is_script = true;
}

void parse_statement(NodeList *list) {
    settle_kind_of_file();
    bool is_first = Parsing.at_body_start;
    Parsing.at_body_start = false;
    StatementStart = Current.start;
    uint16_t flags = Current.flags & AFTER_BLANK_LINE ? BLANK_BEFORE : 0;
    Statement statement = {list, Current.start, flags, {}};
    if (opens_block(Current.kind)) {
        append_statement(&statement,
                         can_open_block() ? parse_opened_block(&statement) : skip_block());
    } else if (Current.kind == TOKEN_FUNCTION) {
        append_statement(&statement, can_open_block() ? parse_function(&statement) : skip_source());
    } else if (Current.kind == TOKEN_CLASSDEF) {
        append_statement(&statement, refuse_class());
    } else if (begins_do_loop()) {
        append_statement(&statement, can_open_block() ? parse_do(&statement) : skip_source());
    } else if (is_first && begins_argument_block()) {
        append_statement(&statement, parse_argument_block());
        Parsing.at_body_start = true;
    } else {
        parse_line_statement(&statement);
    }
    append_all(list, &statement.after);
}

// The word until ends the statements of a do.
void settle_until() {
    if (Parsing.open_do > 0 && is_word_of(SOFT_UNTIL)) Current.kind = TOKEN_UNTIL;
}

// A token that ends statements and that no block waits for, as a bad statement.
void skip_stray_token(NodeList *list) {
    Node *bad = new_text_node(NODE_BAD, Current.start, Current.end, nullptr);
    note_stray_token();
    append(list, bad);
    advance();
}

// Column of a token, from 0.
uint32_t column_of(uint32_t offset) {
    uint32_t start = offset;
    while (start > 0 && !is_line_end(Scan.text[start - 1])) start--;
    return offset - start;
}

// Whether a function that begins in the body of another is the next one of the file, not a nested
// one. The first time this is a guess, which the ends of the file confirm or not.
bool is_next_function() {
    if (!is_in_function_body()) return is_awaited();
    if (Parsing.ends == ENDS_UNKNOWN) {
        uint32_t outer = OpenBlocks[Parsing.blocks - 1].offset;
        Parsing.ends = column_of(Current.start) > column_of(outer) ? WITH_ENDS : WITHOUT_ENDS;
    }
    return Parsing.ends == WITHOUT_ENDS;
}

// Whether the current token, a keyword, ends the list.
bool ends_list() {
    if (Current.kind == TOKEN_FUNCTION) return is_next_function();
    return ends_statements(Current.kind) && is_awaited();
}

void take_comment(NodeList *list) {
    append(list, new_comment());
    advance();
}

}  // namespace

void put_inside_comments(Statement *statement) {
    if (!Scan.comments.first) return;
    Scan.comments.first->flags |= statement->flags;
    statement->flags = 0;
    append_all(statement->list, &Scan.comments);
}

void parse_statements(NodeList *list) {
    for (;;) {
        settle_until();
        switch (Current.kind) {
            case TOKEN_NEWLINE:
            case TOKEN_SEMICOLON:
            case TOKEN_COMMA: advance(); continue;
            case TOKEN_COMMENT: take_comment(list); continue;
            case TOKEN_END_OF_FILE: return;
            default: break;
        }
        if (is_keyword(Current.kind) && ends_list()) return;
        if (ends_statements(Current.kind)) {
            skip_stray_token(list);
        } else {
            parse_statement(list);
        }
    }
}

Node *parse_block() {
    Node *block = new_node(NODE_BLOCK, Previous.end);
    NodeList list;
    append_all(&list, &Scan.comments);
    parse_statements(&list);
    block->first_child = list.first;
    return finish(block);
}

Node *parse_head() {
    Node *node = parse_expression();
    if (Current.kind == TOKEN_ASSIGN) syntax_error(ASSIGNMENT_AS_VALUE, Current.start, Current.end);
    if (!Failed) return node;
    uint32_t start = node->offset;
    recover();
    return new_text_node(NODE_BAD, start, start, nullptr);
}
