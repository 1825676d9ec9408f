// try statements: the host is asked for a form, as none is known.
#include <string.h>

#include "lower/context.h"
#include "lower/gaps.h"
#include "lower/host_words.h"
#include "lower/keyword_calls.h"
#include "lower/lines.h"
#include "lower/program_files.h"
#include "lower/statements.h"
#include "support/allocation.h"

namespace {

Lines lower_at_top(const Node *block) {
    Lines lines = {};
    Lines *outer = Lowering.lines;
    Lowering.lines = &lines;
    lower_siblings(block->first_child, nullptr, 0);
    Lowering.lines = outer;
    return lines;
}

// Puts the lines of a text behind a mark.
void put_lines_of(const char *text, const char *mark) {
    for (;;) {
        size_t length = strcspn(text, "\n");
        put_line("%s%s", {mark, KeepText(text, length)});
        if (!text[length]) return;
        text += length + 1;
    }
}

void put_handler(const Lines *handler, const char *identifier) {
    if (!handler->first) return;
    put_line(*identifier ? "# catch %s" : "# catch%s", {identifier});
    put_lines_of(lines_text(handler), "#     ");
}

// The body as if nothing failed, the handler as comments.
void put_uncaught(Lines *body, const Lines *handler, const char *identifier) {
    put_line("# not translated: errors in the lines below are not caught", {});
    indent_lines(body, Lowering.level);
    append_lines(Lowering.lines, body);
    put_handler(handler, identifier);
}

}  // namespace

void put_try(const Node *node) {
    const Node *block = node->first_child;
    const Node *second = block->next;
    bool has_identifier = has_flag(node, HAS_IDENTIFIER);
    Lines body = lower_at_top(block);
    const char *identifier = has_identifier ? written_name(second->symbol) : "";
    Lines handler = lower_at_top(has_identifier ? second->next : second);
    const mExpr *answer = ask_keyword("try", {lines_text(&body), lines_text(&handler), identifier});
    if (answer) return put_lines_of(answer->text, "");
    uint32_t length = sizeof "try" - 1;
    report(TRY_GAP, CurrentFile->source, node->offset, length);
    put_uncaught(&body, &handler, identifier);
}
