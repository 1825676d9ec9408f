// Literals in brackets and braces: rows of elements.
#include "syntax/parse/expressions.h"
#include "syntax/parse/parser_state.h"

namespace {

struct LiteralForm {
    NodeKind kind;
    TokenKind closer;
    const char *closing;
};
constexpr LiteralForm MATRIX = {NODE_MATRIX, TOKEN_CLOSE_BRACKET, "]"};
constexpr LiteralForm CELL = {NODE_CELL, TOKEN_CLOSE_BRACE, "}"};

bool ends_row(TokenKind kind) { return kind == TOKEN_SEMICOLON || kind == TOKEN_ROW_END; }

bool is_after_row(const LiteralForm &form) {
    return ends_row(Current.kind) || Current.kind == form.closer;
}

// Goes over commas; whether there is one without an element in front of it.
bool skip_commas(bool after_element) {
    bool has_gap = false;
    for (; Current.kind == TOKEN_COMMA; advance()) {
        has_gap = has_gap || !after_element;
        after_element = false;
    }
    return has_gap;
}

// The elements up to the row's end; null when there is none. Empty elements count for nothing.
Node *parse_row(const LiteralForm &form) {
    NodeList elements;
    bool has_gap = skip_commas(false);
    while (!is_after_row(form)) {
        append(&elements, parse_expression());
        if (Current.kind != TOKEN_COMMA) break;
        has_gap |= skip_commas(true);
    }
    if (!elements.first) return nullptr;
    Node *row = new_parent(NODE_ROW, elements.first);
    row->length = end_of(elements.last) - row->offset;
    if (has_gap) row->flags |= HAS_GAP;
    return row;
}

Node *parse_rows(const LiteralForm &form) {
    NodeList rows;
    for (;;) {
        while (ends_row(Current.kind)) advance();
        if (Current.kind == form.closer) break;
        if (Node *row = parse_row(form)) append(&rows, row);
        if (!ends_row(Current.kind)) break;
    }
    return rows.first;
}

void close_literal(const LiteralForm &form, uint32_t opener) {
    if (Current.kind == TOKEN_ASSIGN) syntax_error(ASSIGNMENT_AS_VALUE, Current.start, Current.end);
    if (Current.kind != form.closer) return unclosed_bracket(form.closing, opener);
    advance();
}

}  // namespace

Node *parse_literal() {
    const LiteralForm &form = Current.kind == TOKEN_OPEN_BRACE ? CELL : MATRIX;
    Node *node = new_node(form.kind, Current.start);
    enter_level();
    if (!Failed) advance();
    node->first_child = parse_rows(form);
    leave_level();
    close_literal(form, node->offset);
    return finish(node);
}
