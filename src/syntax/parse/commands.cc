// Commands: words instead of arguments, read from the bytes.
#include "syntax/parse/commands.h"

#include <assert.h>
#include <string.h>

#include "syntax/parse/parser_state.h"
#include "syntax/scan/class_table.h"
#include "syntax/scan/scan_comments.h"

namespace {

// After the operator at a byte; the byte itself when there is none.
const char *operator_end(const char *at) {
    bool is_operator = class_of(*at) == BYTE_OPERATOR || class_of(*at) == BYTE_NOT;
    if (at[0] == '.' && (class_of(at[1]) == BYTE_OPERATOR || at[1] == '\'')) return at + 2;
    if (!is_operator) return at;
    bool is_doubled = at[1] == at[0] && *at != ':' && *at != '~' && *at != '!';
    return at[1] == '=' || is_doubled ? at + 2 : at + 1;
}

bool ends_statement(const char *at) {
    at = skip_blanks(at);
    return is_line_end(*at) || *at == ';' || *at == ',' || at >= Scan.end;
}

// x += y and x++ change a variable, even one that is not known yet.
bool is_change(const char *at, const char *end) {
    if (end - at != 2) return false;
    if (end[-1] == '=') return !strchr("<>~!", *at);
    return (*at == '+' || *at == '-') && ends_statement(end);
}

// Whether an operator at a byte makes an expression of the statement.
bool is_binary_operator(const char *at) {
    if (*at == '=') return at[1] != '=' || is_blank(at[2]);
    const char *end = operator_end(at);
    return end != at && (is_blank(*end) || is_change(at, end));
}

bool begins_word(const char *at) {
    switch (class_of(*at)) {
        case BYTE_LINE:
        case BYTE_COMMA:
        case BYTE_SEMICOLON:
        case BYTE_COMMENT:
        case BYTE_END: return false;
        default: return at < Scan.end && *at != '(' && *at != ')' && !is_continuation(at);
    }
}

bool ends_word(const char *at) {
    switch (class_of(*at)) {
        case BYTE_BLANK:
        case BYTE_LINE:
        case BYTE_COMMA:
        case BYTE_SEMICOLON: return true;
        default: return *at == '%' || at >= Scan.end || is_continuation(at);
    }
}

// After the closing quote; null when there is none on the line.
const char *quoted_end(const char *at) {
    char quote = *at++;
    for (; !is_line_end(*at) && at < Scan.end; at++) {
        if (*at == quote && *++at != quote) return at;
    }
    return nullptr;
}

// Fails the command at a quote that is not closed.
const char *refuse_quote(const char *quote) {
    set_bad_token(quote, find_line_end(quote));
    syntax_error(UNCLOSED_STRING, Current.start, Current.end,
                 {*quote == '"' ? "a double quote" : "a quote"});
    return nullptr;
}

// After the bracket that closes the one at a byte, or after that one when none does on its line.
const char *bracket_end(const char *at) {
    int depth = 0;
    for (const char *end = at; !is_line_end(*end) && end < Scan.end; end++) {
        if (class_of(*end) == BYTE_OPEN) depth++;
        if (class_of(*end) == BYTE_CLOSE && --depth == 0) return end + 1;
    }
    return at + 1;
}

// The end of the word at a byte; null when a quote in it is not closed. Brackets group, as quotes
// do, up to one that nothing on the line closes.
const char *command_word_end(const char *at, bool *brackets_group) {
    while (!ends_word(at)) {
        const char *start = at;
        bool is_quote = *at == '\'' || *at == '"';
        bool groups = *brackets_group && class_of(*at) == BYTE_OPEN;
        at = is_quote ? quoted_end(at) : groups ? bracket_end(at) : at + 1;
        if (!at) return refuse_quote(start);
        if (groups && at == start + 1) *brackets_group = false;
    }
    return at;
}

// The bytes of a word without the quotes around its quoted parts.
const char *word_text(const char *at, const char *end) {
    char *text = keep_bytes(at, static_cast<size_t>(end - at));
    char *to = text;
    char quote = '\0';
    for (const char *from = text; *from; from++) {
        bool is_quote = quote ? *from == quote : *from == '\'' || *from == '"';
        bool is_doubled = is_quote && quote && from[1] == quote;
        if (is_quote && !is_doubled) {
            quote = quote ? '\0' : *from;
            continue;
        }
        if (is_doubled) from++;
        *to++ = *from;
    }
    *to = '\0';
    return text;
}

Node *take_word(const char *at, bool *brackets_group) {
    const char *end = command_word_end(at, brackets_group);
    if (!end) return nullptr;
    Scan.at = end;
    Current.end = offset_of(end);
    return new_text_node(NODE_WORD, offset_of(at), offset_of(end), word_text(at, end));
}

// The words up to the statement's end. A # is a comment only in front of a word.
void take_words(NodeList *words) {
    bool brackets_group = true;
    for (;;) {
        const char *at = skip_blanks(Scan.at);
        while (is_continuation(at)) at = skip_blanks(skip_continuation(at));
        Scan.at = at;
        if (ends_word(at) || *at == '#') break;
        Node *word = take_word(at, &brackets_group);
        if (!word) return;
        append(words, word);
    }
    advance();
}

}  // namespace

bool is_command() {
    const char *at = Scan.at;
    if (!is_blank(*at)) return false;
    at = skip_blanks(at);
    return begins_word(at) && !is_binary_operator(at);
}

Node *parse_command() {
    assert(Current.kind == TOKEN_NAME);
    Node *name = new_text_node(NODE_NAME, Current.start, Current.end, Current.text);
    Node *command = new_parent(NODE_COMMAND, name);
    NodeList words;
    append(&words, name);
    take_words(&words);
    return finish(command);
}

Node *parse_system_command() {
    const char *start = Scan.at;
    const char *end = find_line_end(start);
    Node *node = new_text_node(NODE_SYSTEM, Current.start, offset_of(end),
                               keep_bytes(start, static_cast<size_t>(end - start)));
    Scan.at = end;
    Current.end = offset_of(end);
    advance();
    return node;
}
