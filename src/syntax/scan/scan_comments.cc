// Comments. Outside of brackets they are tokens; elsewhere they are collected as nodes, which the
// parser puts in front of the statement.
#include "syntax/scan/scan_comments.h"

#include <assert.h>
#include <string.h>

#include "syntax/scan/class_table.h"
#include "syntax/scan/scanner.h"
#include "syntax/scan/syntax_errors.h"

namespace {

// Where the outermost open block comment begins.
const char *BlockComment;

const char *after_line_end(const char *at) {
    if (at == Scan.end) return at;
    return at[0] == '\r' && at[1] == '\n' ? at + 2 : at + 1;
}

const char *skip_to_code(const char *at, const char *end) {
    while (at < end && is_blank(*at)) at++;
    return at;
}

// Whether two characters are all that stands on a line, or on what is left of it.
bool stand_alone(const char *at, const char *line_end, char second) {
    at = skip_to_code(at, line_end);
    return line_end - at >= 2 && (at[0] == '%' || at[0] == '#') && at[1] == second &&
           skip_to_code(at + 2, line_end) == line_end;
}

Node *comment_node(const char *start, const char *text, const char *end, uint16_t flags) {
    assert(start <= end && text <= end && end <= Scan.end);
    Node *node = new_text_node(NODE_COMMENT, offset_of(start), offset_of(end),
                               keep_source(text, static_cast<size_t>(end - text)));
    node->flags = flags;
    Scan.comments_made++;
    return node;
}

void collect_comment(const char *start, const char *text, const char *end) {
    append(&Scan.comments, comment_node(start, text, end, INSIDE));
}

bool make_comment_token(const char *end) {
    Current.kind = TOKEN_COMMENT;
    Current.end = offset_of(end);
    return true;
}

void open_block_comment(const char *at, const char *line_end) {
    assert(Scan.block_comments == 0 && "what stands in one is read by lines");
    Scan.block_comments = 1;
    BlockComment = at;
    Scan.at = after_line_end(line_end);
    Scan.line_flags = Current.flags;
}

// A line of text in a block comment.
bool take_block_line(const char *at, const char *line_end) {
    if (Scan.depth > 0) {
        append(&Scan.comments, comment_node(at, at, line_end, INSIDE | IN_BLOCK_COMMENT));
        return false;
    }
    Current.start = offset_of(at);
    Current.op = OPERATOR_NONE;
    Current.flags = static_cast<uint8_t>(Scan.line_flags | FIRST_ON_LINE | OF_BLOCK_COMMENT);
    Scan.line_flags = 0;
    return make_comment_token(line_end);
}

// The line that closes a block comment, and the line end after it.
void close_block_comment() {
    assert(Scan.block_comments > 0);
    if (--Scan.block_comments == 0) Scan.line_flags = FIRST_ON_LINE;
}

}  // namespace

const char *find_line_end(const char *at) {
    if (Scan.has_returns) return line_end(at, Scan.end);
    const void *feed = memchr(at, '\n', static_cast<size_t>(Scan.end - at));
    return feed ? static_cast<const char *>(feed) : Scan.end;
}

bool scan_comment(const char *at) {
    const char *end = find_line_end(at);
    if (at[1] == '{' && (Current.flags & FIRST_ON_LINE) && stand_alone(at, end, '{')) {
        open_block_comment(at, end);
        return false;
    }
    Scan.at = end;
    if (Scan.depth == 0) return make_comment_token(end);
    collect_comment(at, at + 1, end);
    return false;
}

bool scan_block_line() {
    while (Scan.block_comments > 0) {
        const char *at = Scan.at;
        const char *end = find_line_end(at);
        if (at == Scan.end) {
            note_error(UNCLOSED_BLOCK_COMMENT, offset_of(BlockComment),
                       offset_of(BlockComment) + 2);
            Scan.block_comments = 0;
            return false;
        }
        Scan.at = after_line_end(end);
        if (stand_alone(at, end, '{')) {
            Scan.block_comments++;
        } else if (stand_alone(at, end, '}')) {
            close_block_comment();
        } else if (take_block_line(at, end)) {
            return true;
        }
    }
    return false;
}

// The text after the dots is a comment, with or without a sign of its own.
const char *skip_continuation(const char *at) {
    assert(is_continuation(at));
    const char *text = at + 3;
    const char *end = find_line_end(text);
    const char *start = skip_to_code(text, end);
    bool has_sign = start < end && class_of(*start) == BYTE_COMMENT;
    if (start < end) collect_comment(start, has_sign ? start + 1 : text, end);
    return after_line_end(end);
}

Node *new_comment() {
    assert(Current.kind == TOKEN_COMMENT);
    const char *start = Scan.text + Current.start;
    const char *end = Scan.text + Current.end;
    bool in_block = (Current.flags & OF_BLOCK_COMMENT) != 0;
    Node *node = comment_node(start, in_block ? start : start + 1, end, 0);
    if (in_block) node->flags |= IN_BLOCK_COMMENT;
    if (!(Current.flags & FIRST_ON_LINE)) node->flags |= TRAILING;
    if (Current.flags & AFTER_BLANK_LINE) node->flags |= BLANK_BEFORE;
    return node;
}
