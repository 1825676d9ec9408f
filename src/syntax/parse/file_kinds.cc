// Scripts and files of functions.
#include "syntax/parse/file_kinds.h"

#include "syntax/scan/scanner.h"
#include "syntax/scan/syntax_errors.h"

namespace {

bool has_function(const Node *file, const char *name) {
    for (const Node *node = file->first_child; node; node = node->next)
        if (node->kind == NODE_FUNCTION && node->text == name) return true;
    return false;
}

// Of a file that begins with a function: MATLAB takes one with statements for a script, unless its
// name means a function of it. Where there are errors an end may have closed a function too early.
bool is_script_after_functions(const Node *file, const char *name, bool has_errors,
                               SourceLanguage language) {
    return language != LANGUAGE_OCTAVE && !has_errors && has_statements(file) &&
           !has_function(file, name);
}

void skip_separators() {
    while (Current.kind == TOKEN_NEWLINE || Current.kind == TOKEN_COMMENT ||
           Current.kind == TOKEN_SEMICOLON || Current.kind == TOKEN_COMMA)
        advance();
}

// Names, and what may stand between those of parameters and outputs.
void skip_names() {
    while (Current.kind == TOKEN_NAME || Current.kind == TOKEN_COMMA || Current.kind == TOKEN_NOT)
        advance();
}

bool take(TokenKind kind) {
    if (Current.kind != kind) return false;
    advance();
    return true;
}

// From after the word function to the end of its header. One that is not as plain as most is none
// of the name, nor is a broken one.
bool is_plain_header_of(const char *name) {
    if (take(TOKEN_OPEN_BRACKET)) {
        skip_names();
        if (!take(TOKEN_CLOSE_BRACKET) || !take(TOKEN_ASSIGN)) return false;
    }
    if (Current.kind != TOKEN_NAME) return false;
    const char *found = Current.text;
    advance();
    if (take(TOKEN_ASSIGN)) {
        if (Current.kind != TOKEN_NAME) return false;
        found = Current.text;
        advance();
    }
    if (take(TOKEN_OPEN_PAREN)) {
        skip_names();
        if (!take(TOKEN_CLOSE_PAREN)) return false;
    }
    return found == name && (Current.kind == TOKEN_NEWLINE || Current.kind == TOKEN_COMMENT);
}

// Whether the first tokens show that the name cannot be a script's.
bool begins_like_function(Source *source, const char *name, SourceLanguage language) {
    begin_errors(source);
    begin_scan(source, language);
    skip_separators();
    if (Current.kind == TOKEN_CLASSDEF) return true;
    return take(TOKEN_FUNCTION) && is_plain_header_of(name);
}

}  // namespace

bool is_statement(const Node *node) {
    return node->kind != NODE_FUNCTION && node->kind != NODE_COMMENT && node->kind != NODE_BAD;
}

bool has_statements(const Node *file) {
    for (const Node *node = file->first_child; node; node = node->next)
        if (is_statement(node)) return true;
    return false;
}

// It begins with a statement, or says nothing. What could not be read may have been a function.
bool is_script_file(const Node *file, const char *name, bool has_errors, SourceLanguage language) {
    bool is_empty = true;
    for (const Node *node = file->first_child; node; node = node->next) {
        if (node->kind == NODE_FUNCTION)
            return is_script_after_functions(file, name, has_errors, language);
        if (is_statement(node)) return true;
        if (node->kind == NODE_BAD) is_empty = false;
    }
    return is_empty;
}

bool is_script_source(Source *source, const char *name, SourceLanguage language) {
    if (begins_like_function(source, name, language)) return false;
    bool has_errors;
    const Node *file = parse_unreported(source, language, &has_errors);
    return is_script_file(file, name, has_errors, language);
}
