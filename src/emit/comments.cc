// Comments of the source.
#include "emit/comments.h"

#include <string.h>

#include "emit/output.h"

vExpr *LastComment;

vExpr *start_line_ends() {
    static mExpr line_end = {EXPR_COMMENT, "\n", NOT_SCALAR, nullptr};
    LastComment = alloc_vExpr(&line_end);
    return LastComment;
}

vExpr *start_comments(const char *text) {
    LastComment = alloc_vExpr(new_node(EXPR_COMMENT, text));
    return LastComment;
}

vExpr *add_comment(vExpr *list, const char *text) {
    LastComment = prepend_vExpr(new_node(EXPR_COMMENT, text), list);
    return LastComment;
}

static void write_comment(const char *text, int level) {
    write_indent(level);
    if (const char *percent = strchr(text, '%')) {
        write_output("#");
        text = percent + 1;
    }
    write_output(text);
}

void write_comments(const vExpr *list, int level) {
    if (!list) return;
    while (list->next) list = list->next;
    if (strcmp(list->item->text, "\n") == 0) list = list->prev;
    for (; list; list = list->prev) {
        if (list->item->text) write_comment(list->item->text, level);
    }
}
