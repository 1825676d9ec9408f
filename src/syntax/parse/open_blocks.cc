// The blocks that are open, and errors in how they end.
#include "syntax/parse/open_blocks.h"

#include <assert.h>
#include <string.h>

#include "syntax/scan/end_hints.h"

OpenBlock OpenBlocks[MOST_NESTED];

namespace {

OpenBlock *innermost() {
    assert(Parsing.blocks > 0);
    return &OpenBlocks[Parsing.blocks - 1];
}

bool waits_for(const OpenBlock *block, TokenKind kind) {
    if (kind == TOKEN_FUNCTION) return block->opener == TOKEN_FUNCTION;
    return ends_statements(kind) && (block->closers & closer(kind)) != 0;
}

// The keyword at an offset, as a kept text.
const char *keyword_at(uint32_t offset) {
    const char *start = Scan.text + offset;
    size_t length = strspn(start, "abcdefghijklmnopqrstuvwxyz_");
    return keep_bytes(start, length);
}

// What ends a block instead of its end, and where another block may have lost its own.
const char *found_instead(const Node *body) {
    const char *found = describe_token();
    if (Current.kind != TOKEN_END_OF_FILE)
        found = join({found, " of line ", line_number_text(Current.start)});
    const Node *suspect = find_suspect(body);
    if (!suspect) return found;
    return join({found, "; perhaps the '", keyword_at(suspect->offset), "' of line ",
                 line_number_text(suspect->offset), " lacks it: the end of line ",
                 line_number_text(end_of(suspect) - 1), " stands to the left of it"});
}

void note_unclosed(const OpenBlock *block, const Node *body) {
    if (is_silent()) return;
    const char *keyword = keyword_at(block->offset);
    const char *expected = block->opener == TOKEN_UNTIL ? "until" : "end";
    uint32_t end = block->offset + static_cast<uint32_t>(strlen(keyword));
    note_error(UNCLOSED_BLOCK, block->offset, end, {keyword, expected, found_instead(body)});
}

// The statement that a branch belongs to.
const char *owner_of(TokenKind branch) {
    switch (branch) {
        case TOKEN_ELSE:
        case TOKEN_ELSEIF: return "an 'if'";
        case TOKEN_CASE:
        case TOKEN_OTHERWISE: return "a 'switch'";
        case TOKEN_CATCH: return "a 'try'";
        default: return "an 'unwind_protect'";
    }
}

const char *innermost_text() {
    if (Parsing.blocks == 0) return "no block is open here";
    const OpenBlock *block = innermost();
    if (block->opener == TOKEN_FUNCTION && Current.kind == TOKEN_END)
        return "the functions of this file have no end of their own";
    return join({"the block that is open is the '", keyword_at(block->offset), "' of line ",
                 line_number_text(block->offset)});
}

}  // namespace

bool can_open_block() {
    if (Parsing.depth < MOST_NESTED) return true;
    note_error(NESTING_TOO_DEEP, Current.start, Current.end, {"400"});
    return false;
}

void open_block(TokenKind opener, uint32_t offset, uint64_t closers) {
    assert(Parsing.blocks < MOST_NESTED);
    OpenBlocks[Parsing.blocks++] = {opener, offset, closers};
    Parsing.depth++;
}

void expect_closers(uint64_t closers) { innermost()->closers = closers; }

bool is_awaited() {
    for (int32_t i = Parsing.blocks - 1; i >= 0; i--) {
        if (waits_for(&OpenBlocks[i], Current.kind)) return true;
    }
    return false;
}

static bool is_loop(TokenKind opener) {
    return opener == TOKEN_FOR || opener == TOKEN_PARFOR || opener == TOKEN_WHILE ||
           opener == TOKEN_UNTIL;
}

bool is_in_loop() {
    int32_t block = Parsing.blocks - 1;
    while (block >= 0 && !is_loop(OpenBlocks[block].opener)) {
        if (OpenBlocks[block--].opener == TOKEN_FUNCTION) return false;
    }
    return block >= 0;
}

bool is_in_function_body() { return Parsing.blocks > 0 && innermost()->opener == TOKEN_FUNCTION; }

void close_block(TokenKind other_end, const Node *body) {
    assert(Parsing.depth >= Parsing.blocks);
    bool is_plain_end = Current.kind == TOKEN_END && innermost()->opener != TOKEN_UNTIL;
    if (is_plain_end || Current.kind == other_end) {
        advance();
    } else {
        note_unclosed(innermost(), body);
    }
    Parsing.blocks--;
    Parsing.depth--;
}

void note_stray_token() {
    assert(ends_statements(Current.kind));
    const char *keyword = keyword_at(Current.start);
    if (is_end(Current.kind)) {
        note_error(STRAY_END, Current.start, Current.end, {keyword, innermost_text()});
    } else {
        note_error(STRAY_BRANCH, Current.start, Current.end, {keyword, owner_of(Current.kind)});
    }
}
