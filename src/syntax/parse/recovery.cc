// Going on after an error, so that one reading finds all independent errors.
#include "syntax/parse/recovery.h"

#include <assert.h>
#include <string.h>

#include <algorithm>

#include "syntax/parse/open_blocks.h"
#include "syntax/parse/parser_state.h"
#include "syntax/scan/class_table.h"
#include "syntax/scan/scan_comments.h"

namespace {

// After the bracket that closes the one at a byte, on its line; null when there is none. Quotes
// are not looked at: this is a guess.
const char *matching_end(const char *at) {
    int depth = 0;
    for (; !is_line_end(*at) && at < Scan.end; at++) {
        if (class_of(*at) == BYTE_OPEN) depth++;
        if (class_of(*at) == BYTE_CLOSE && --depth == 0) return at + 1;
    }
    return nullptr;
}

// After a name and its selectors.
const char *target_end(const char *at) {
    at = word_end(at);
    for (;;) {
        if (*at == '.' && class_of(at[1]) == BYTE_LETTER) {
            at = word_end(at + 1);
        } else if (*at == '(' || *at == '{') {
            at = matching_end(at);
            if (!at) return nullptr;
        } else {
            return at;
        }
    }
}

bool is_assigned(const char *at) {
    if (!at) return false;
    at = skip_blanks(at);
    return *at == '=' && at[1] != '=';
}

// Whether the line at a byte begins with a keyword or an assignment.
bool begins_statement(const char *at) {
    at = skip_blanks(at);
    if (*at == '[') return is_assigned(matching_end(at));
    if (class_of(*at) != BYTE_LETTER) return false;
    const char *end = word_end(at);
    const Spelling *spelling = spelling_of_bytes(at, static_cast<uint32_t>(end - at));
    return is_keyword(spelling->keyword) || is_assigned(target_end(at));
}

const char *line_start(const char *at) {
    while (at > Scan.text && !is_line_end(at[-1])) at--;
    return at;
}

const char *next_line(const char *at) {
    at = find_line_end(at);
    if (*at == '\r' && at[1] == '\n') at++;
    return at < Scan.end ? at + 1 : at;
}

// Whether three dots stand in a line: it may go on in the next.
bool is_continued(const char *at) {
    for (; !is_line_end(*at) && at < Scan.end; at++) {
        if (is_continuation(at)) return true;
    }
    return false;
}

// The first line after that of the outermost open bracket, up to the failed token, that begins a
// statement; null when there is none.
const char *find_earlier_line() {
    const char *at = Scan.text + open_bracket_at(0);
    const char *failed = Scan.text + FailedToken.start;
    for (;;) {
        bool goes_on = is_continued(at);
        const char *next = next_line(at);
        if (next > failed || next == at || next == Scan.end) return nullptr;
        if (!goes_on && begins_statement(next)) return next;
        at = next;
    }
}

// Takes back the comments that will be read again.
void drop_comments(uint32_t from) {
    NodeList kept;
    for (Node *comment = Scan.comments.first; comment; comment = comment->next) {
        if (comment->offset < from) {
            append(&kept, comment);
        } else {
            Scan.comments_made--;
        }
    }
    if (kept.last) kept.last->next = nullptr;
    Scan.comments = kept;
}

// The innermost bracket that was open in front of an offset.
uint32_t bracket_before(uint32_t offset) {
    int32_t i = Scan.depth - 1;
    while (i > 0 && open_bracket_at(i) >= offset) i--;
    return open_bracket_at(i);
}

const char *closer_of(char opener) { return opener == '(' ? ")" : opener == '[' ? "]" : "}"; }

// The error is one of the line where the bracket should have been closed.
void blame_line_before(const char *line) {
    const char *end = line;
    while (is_blank(end[-1]) || is_line_end(end[-1])) end--;
    uint32_t opener = bracket_before(offset_of(line));
    move_error_to_line_end(offset_of(end), closer_of(Scan.text[opener]), opener);
}

// Whether the source from the line to the failed token can be read again: all in all not more than
// the source is long, and some lines of a short one.
bool may_read_again(const char *line) {
    uint32_t bytes = FailedToken.start - offset_of(line);
    if (Parsing.read_again + bytes > offset_of(Scan.end) + 10000) return false;
    Parsing.read_again += bytes;
    return true;
}

bool go_on_at_earlier_line() {
    const char *line = find_earlier_line();
    if (!line || !may_read_again(line)) return false;
    blame_line_before(line);
    drop_comments(offset_of(line));
    Previous.end = offset_of(line);
    continue_at(line);
    return true;
}

// Whether statements can go on at the current token, which a block's keyword after the failed
// statement's start is one of.
bool is_resumable() {
    switch (Current.kind) {
        case TOKEN_NEWLINE:
        case TOKEN_COMMENT:
        case TOKEN_END_OF_FILE: return true;
        default:
            if (Current.start <= StatementStart) return false;
            return opens_block(Current.kind) || (ends_statements(Current.kind) && is_awaited());
    }
}

bool begins_line_in_brackets() {
    return (Current.flags & FIRST_ON_LINE) && Current.start > FailedToken.start &&
           begins_statement(Scan.text + Current.start);
}

void skip_statement() {
    for (;; advance()) {
        if (Current.kind == TOKEN_END_OF_FILE) return;
        if (Scan.depth > 0 && begins_line_in_brackets()) {
            continue_at(line_start(Scan.text + Current.start));
            return;
        }
        if (Scan.depth > 0) continue;
        if (is_resumable()) return;
        if (Current.kind == TOKEN_SEMICOLON || Current.kind == TOKEN_COMMA) return advance();
    }
}

Node *bad_node(uint32_t start, const NodeList *children) {
    Node *bad = new_node(NODE_BAD, start);
    bad->first_child = children->first;
    return finish_bad(bad);
}

// Skips a token, comments apart.
void skip_token(NodeList *comments) {
    if (Current.kind == TOKEN_COMMENT) append(comments, new_comment());
    advance();
    append_all(comments, &Scan.comments);
}

}  // namespace

// Between two tokens stand comments of continued lines.
Node *finish_bad(Node *node) {
    assert(node->kind == NODE_BAD);
    uint32_t after = std::max(Previous.end, Current.start);
    const char *end = Scan.text + after;
    while (end > Scan.text + node->offset && (is_blank(end[-1]) || is_line_end(end[-1]))) end--;
    node->length = offset_of(end) - node->offset;
    return node;
}

void recover() {
    Failed = false;
    Skipping = true;
    Current = FailedToken;
    if (Scan.depth == 0 || !go_on_at_earlier_line()) skip_statement();
    Skipping = false;
}

Node *recover_statement(uint32_t start) {
    assert(Failed);
    recover();
    NodeList comments;
    append_all(&comments, &Scan.comments);
    // after a comma a continued line may begin
    if (comments.first && comments.first->offset < start) start = comments.first->offset;
    return bad_node(start, &comments);
}

Node *skip_block() {
    uint32_t start = Current.start;
    NodeList comments;
    int64_t open = 0;
    Skipping = true;
    do {
        if (opens_block(Current.kind)) open++;
        if (is_end(Current.kind)) open--;
        skip_token(&comments);
    } while (open > 0 && Current.kind != TOKEN_END_OF_FILE);
    Skipping = false;
    return bad_node(start, &comments);
}

Node *skip_source() {
    uint32_t start = Current.start;
    NodeList comments;
    Skipping = true;
    while (Current.kind != TOKEN_END_OF_FILE) skip_token(&comments);
    Skipping = false;
    return bad_node(start, &comments);
}
