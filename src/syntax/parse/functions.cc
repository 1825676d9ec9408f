// Functions: headers, bodies, and what ends them.
#include <assert.h>
#include <string.h>

#include "syntax/parse/expressions.h"
#include "syntax/parse/open_blocks.h"
#include "syntax/parse/recovery.h"
#include "syntax/parse/statements.h"
#include "syntax/scan/class_table.h"

namespace {

constexpr uint64_t ENDS_OF_FUNCTION = closer(TOKEN_END) | closer(TOKEN_END_FUNCTION);

// Of the run: variables of different functions are told apart by it.
uint32_t FunctionCount;

Node *end_list(Node *node, const NodeList *list) {
    node->first_child = list->first;
    return finish(node);
}

Node *take_variable() {
    Node *name = take_name();
    add_variable(name);
    return name;
}

// [a, b] or [a b], from the bracket on.
Node *parse_output_list() {
    Node *outputs = new_node(NODE_OUTPUTS, Current.start);
    NodeList names;
    advance();
    while (Current.kind == TOKEN_NAME) {
        append(&names, take_variable());
        if (Current.kind == TOKEN_COMMA) advance();
    }
    if (Current.kind == TOKEN_CLOSE_BRACKET) {
        advance();
    } else {
        unexpected_token("the name of an output or ']'");
    }
    return end_list(outputs, &names);
}

Node *parse_parameter() {
    if (Current.kind == TOKEN_NOT) {
        Node *tilde = take_leaf(NODE_TILDE);
        tilde->text = nullptr;
        return tilde;
    }
    if (Current.kind != TOKEN_NAME) {
        unexpected_token("the name of a parameter");
        return new_node(NODE_BAD, Current.start);
    }
    Node *name = take_variable();
    if (Current.kind != TOKEN_ASSIGN) return name;
    Node *parameter = new_parent(NODE_DEFAULT, name);
    advance();
    name->next = parse_expression();
    return finish(parameter);
}

// Nothing, or ( ) with what is in them.
Node *parse_parameter_list() {
    Node *parameters = new_node(NODE_PARAMETERS, Previous.end);
    NodeList list;
    if (Current.kind != TOKEN_OPEN_PAREN) return parameters;
    parameters->offset = Current.start;
    enter_level();
    advance();
    if (Current.kind != TOKEN_CLOSE_PAREN) append(&list, parse_parameter());
    while (Current.kind == TOKEN_COMMA) {
        advance();
        append(&list, parse_parameter());
    }
    leave_level();
    if (Current.kind == TOKEN_CLOSE_PAREN) {
        advance();
    } else {
        unclosed_bracket(")", parameters->offset);
    }
    return end_list(parameters, &list);
}

// A name with dots, as those of methods.
Node *parse_function_name(Node *name) {
    while (Current.kind == TOKEN_FIELD) advance();
    finish(name);
    name->text = text_of(spelling_of_bytes(Scan.text + name->offset, name->length));
    return name;
}

// The method that end means in an index of an object.
Node *take_end_name() {
    Scan.ends--;  // it closes nothing
    return take_name();
}

bool is_end_name() {
    bool is_plain_end = Current.kind == TOKEN_END && Current.end - Current.start == strlen("end");
    return is_plain_end && *skip_blanks(Scan.at) == '(';
}

Node *expect_name() {
    if (Current.kind == TOKEN_NAME) return take_name();
    if (is_end_name()) return take_end_name();
    unexpected_token("the name of a function");
    return new_node(NODE_BAD, Current.start);
}

// What stands before the = of a header; or the name, when there is none.
Node *parse_outputs(Node **name) {
    if (Current.kind == TOKEN_OPEN_BRACKET) {
        Node *outputs = parse_output_list();
        if (Current.kind != TOKEN_ASSIGN) unexpected_token("'=' after the outputs");
        return outputs;
    }
    *name = expect_name();
    if (Current.kind != TOKEN_ASSIGN) return new_node(NODE_OUTPUTS, (*name)->offset);
    add_variable(*name);
    Node *outputs = finish(new_parent(NODE_OUTPUTS, *name));
    *name = nullptr;
    return outputs;
}

// outputs = name(parameters)
void parse_header(NodeList *header) {
    Node *name = nullptr;
    append(header, parse_outputs(&name));
    if (!name && !Failed) {
        advance();
        name = expect_name();
    }
    if (Failed) return;
    append(header, parse_function_name(name));
    append(header, parse_parameter_list());
}

// The first of the comments that stand between a body without an end and the next function, and
// that belong to that function: those after an empty line; all, when there is no empty line
// between them and the function.
Node **find_comments_of_next(Node *block, bool blank_before_next) {
    Node **after_code = &block->first_child;
    for (Node **at = after_code; *at; at = &(*at)->next) {
        bool is_loose = (*at)->kind == NODE_COMMENT && !has_flag(*at, TRAILING);
        if (!is_loose) after_code = &(*at)->next;
    }
    Node **first = after_code;
    while (*first && !has_flag(*first, BLANK_BEFORE)) first = &(*first)->next;
    return *first || blank_before_next ? first : after_code;
}

// Cuts those comments from the body.
NodeList cut_comments_of_next(Node *block) {
    NodeList cut;
    Node **place = find_comments_of_next(block, (Current.flags & AFTER_BLANK_LINE) != 0);
    for (Node *comment = *place; comment; comment = comment->next) {
        if (!cut.first) cut.first = comment;
        cut.last = comment;
    }
    *place = nullptr;
    return cut;
}

// Ends the body at the current token: an end, the next function, or the end of the file.
void end_body(Statement *statement, Node *function, Node *block) {
    assert(block->kind == NODE_BLOCK);
    bool is_at_end = Current.kind == TOKEN_END || Current.kind == TOKEN_END_FUNCTION;
    if (Parsing.ends == ENDS_UNKNOWN) Parsing.ends = is_at_end ? WITH_ENDS : WITHOUT_ENDS;
    bool may_be_open = Current.kind == TOKEN_FUNCTION || Current.kind == TOKEN_END_OF_FILE;
    if (is_at_end) function->flags |= CLOSED_BY_END;
    if (is_at_end || Parsing.ends == WITH_ENDS || !may_be_open) {
        close_block(TOKEN_END_FUNCTION, function);
        if (!is_at_end) function->kind = NODE_BAD;
        return;
    }
    if (Current.kind == TOKEN_FUNCTION) statement->after = cut_comments_of_next(block);
    Parsing.blocks--;
    Parsing.depth--;
}

uint64_t function_closers() {
    return Parsing.ends == WITHOUT_ENDS ? closer(TOKEN_END_FUNCTION) : ENDS_OF_FUNCTION;
}

// The function's header and body as its children. An error in the header makes it a bad node.
Node *parse_parts(Node *function) {
    NodeList parts;
    advance();
    parse_header(&parts);
    if (Failed) {
        function->kind = NODE_BAD;
        recover();
    } else {
        function->text = parts.first->next->text;
    }
    Parsing.at_body_start = true;
    Node *block = parse_block();
    append(&parts, block);
    function->first_child = parts.first;
    return block;
}

}  // namespace

void begin_functions() { FunctionCount = 0; }

void begin_frame(FunctionFrame *frame, FunctionFrame *outer) {
    *frame = {++FunctionCount, outer};
    Parsing.function = frame;
}

Node *parse_function(Statement *statement) {
    assert(Current.kind == TOKEN_FUNCTION);
    ParserState saved = Parsing;
    FunctionFrame frame;
    begin_frame(&frame, Parsing.blocks > 0 ? saved.function : nullptr);
    Parsing.open_do = 0;
    Node *function = new_node(NODE_FUNCTION, Current.start);
    open_block(TOKEN_FUNCTION, Current.start, function_closers());
    end_body(statement, function, parse_parts(function));
    Parsing.function = saved.function;
    Parsing.open_do = saved.open_do;
    Parsing.at_body_start = false;
    return finish(function);
}
