// Comments of the source.
#include "lower/lines/comments.h"

#include <assert.h>
#include <string.h>

#include "lower/lines/origins.h"
#include "lower/lines/pieces.h"
#include "lower/program/context.h"

// Lines of block comments keep their indentation, so that they may begin with anything.
static const char *mark_of(const Node *comment) {
    bool is_flush = *comment->text && *comment->text != ' ' && *comment->text != '\t';
    return has_flag(comment, IN_BLOCK_COMMENT) && is_flush ? "# " : "#";
}

void put_comment(const Node *comment, Line *trailed) {
    assert(comment->kind == NODE_COMMENT);
    note_piece(comment, COMMENT_IS_PUT);
    const char *text = without_last_blanks(form_text("%s%s", {mark_of(comment), comment->text}));
    Origin *outer = begin_origin(COMMENT_LINES, comment);
    if (trailed && has_flag(comment, TRAILING)) {
        trailed->text = form_text("%s %s", {trailed->text, text});
        trailed->trailing += strlen(text) + 1;
        if (CurrentOrigin) CurrentOrigin->also = trailed->origin;
        trailed->origin = CurrentOrigin;
    } else {
        add_line(Lowering.lines, Lowering.level, text);
    }
    end_origin(outer);
}
