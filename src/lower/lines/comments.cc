// Comments of the source.
#include "lower/lines/comments.h"

#include <assert.h>
#include <string.h>

#include "lower/lines/origins.h"
#include "lower/lines/pieces.h"
#include "lower/program/context.h"
#include "translate/text_forms.h"

// Lines of block comments keep their indentation, so that they may begin with anything.
static const char *mark_of(const Node *comment) {
    bool is_flush = *comment->text && *comment->text != ' ' && *comment->text != '\t';
    return has_flag(comment, IN_BLOCK_COMMENT) && is_flush ? "# " : "#";
}

// As a line of host text, without blanks at its end.
static const char *text_of_comment(const Node *comment) {
    const char *mark = mark_of(comment);
    size_t length = length_without_last_blanks(comment->text);
    Writer to = new_text(strlen(mark) + length + 1);
    const char *text = to.at;
    write_text(&to, mark);
    write_bytes(&to, comment->text, length);
    return text;
}

void put_comment(const Node *comment, Line *trailed) {
    assert(comment->kind == NODE_COMMENT);
    note_piece(comment, COMMENT_IS_PUT);
    const char *text = text_of_comment(comment);
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
