// try statements: the host is asked for a form, as none is known.
#include <string.h>

#include "lower/context.h"
#include "lower/gaps.h"
#include "lower/host_words.h"
#include "lower/keyword_calls.h"
#include "lower/lines.h"
#include "lower/origins.h"
#include "lower/program_files.h"
#include "lower/statements.h"
#include "lower/tried_fields.h"
#include "support/allocation.h"

namespace {

Lines lower_at_top(const Node *block) {
    Lines lines = {};
    Lines *outer = Lowering.lines;
    Lowering.lines = &lines;
    lower_block_at(block, 0);
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

const Node *handler_of(const Node *node) {
    const Node *second = second_child(node);
    return has_flag(node, HAS_IDENTIFIER) ? second->next : second;
}

// The statements of a try, and the text of its identifier or an empty one.
struct Tried {
    Lines body;
    Lines handler;
    const char *identifier;
    Origin *head;    // of what stands in front of the body
    Origin *middle;  // and in front of the handler
};

Tried lower_parts(const Node *node) {
    bool has_identifier = has_flag(node, HAS_IDENTIFIER);
    Origin *head = CurrentOrigin;
    Lines body = lower_at_top(node->first_child);
    Origin *middle = CurrentOrigin;
    const char *identifier = has_identifier ? written_name(second_child(node)->symbol) : "";
    return {body, lower_at_top(handler_of(node)), identifier, head, middle};
}

void put_lines(Lines *lines, int level) {
    indent_lines(lines, level);
    append_lines(Lowering.lines, lines);
}

// A line of the lines' text each behind a mark; they come from what the lines come from.
void put_marked(const Lines *lines, const char *mark) {
    for (const Line *line = lines->first; line; line = line->next) {
        Line alone = *line;
        alone.next = nullptr;
        Lines one = {&alone, &alone};
        Origin *outer = CurrentOrigin;
        CurrentOrigin = line->origin;
        put_lines_of(lines_text(&one), mark);
        end_origin(outer);
    }
}

// A line that comes from a part of the statement.
void put_part(Origin *part, const char *form, std::initializer_list<const char *> operands) {
    Origin *outer = CurrentOrigin;
    CurrentOrigin = part;
    put_line(form, operands);
    end_origin(outer);
}

// The handler as comments.
void put_handler(const Tried *tried, const char *why) {
    if (!tried->handler.first) return;
    const char *identifier = tried->identifier;
    put_part(tried->middle, *identifier ? "# catch %s%s" : "# catch%s%s", {identifier, why});
    put_marked(&tried->handler, "#     ");
}

void report_try(MessageId id, const Node *node) {
    report(id, CurrentFile->source, node->offset, sizeof "try" - 1);
}

// The body as if nothing failed.
void put_uncaught(Tried *tried, const Node *node) {
    report_try(TRY_GAP, node);
    if (tried->head) tried->head->kind = GAP_LINES;
    put_part(tried->head, "# not translated: errors in the lines below are not caught", {});
    put_lines(&tried->body, Lowering.level);
    put_handler(tried, "");
}

void put_field_test(Tried *tried, const Node *fields) {
    put_part(tried->head, "if %s then", {lower_field_test(fields)});
    put_lines(&tried->body, Lowering.level + 1);
    put_part(tried->middle, "else", {});
    put_lines(&tried->handler, Lowering.level + 1);
    put_line("end if;", {});
}

bool raises_error(const Node *statement) {
    const Node *call = statement->kind == NODE_EXPRESSION ? statement->first_child : nullptr;
    const Node *name = call && call->kind == NODE_REFERENCE ? call->first_child : nullptr;
    if (!name || name->kind != NODE_NAME || is_variable(name->symbol)) return false;
    bool is_error = strcmp(name->text, "error") == 0 || strcmp(name->text, "rethrow") == 0;
    return is_error && name->next->kind == NODE_ARGUMENTS && name->next->first_child;
}

bool is_plain(const Node *statement) {
    return statement->kind >= NODE_EXPRESSION && statement->kind <= NODE_COMMAND;
}

// Whether the handler does nothing but to end the program with an error, as the body's own one
// does.
bool only_raises_error(const Node *handler) {
    for (const Node *node = handler->first_child; node; node = node->next) {
        if (node->kind == NODE_COMMENT) continue;
        if (raises_error(node)) return true;
        if (!is_plain(node)) return false;
    }
    return false;
}

void put_without_handler(Tried *tried, const Node *node) {
    report_try(REPLACED_ERROR, node);
    put_lines(&tried->body, Lowering.level);
    put_handler(tried, ", which only raises another error");
}

void put_answer(const Node *node, const mExpr *answer) {
    Origin *outer = begin_origin(STATEMENT_LINES, node);
    put_lines_of(answer->text, "");
    end_origin(outer);
}

}  // namespace

void put_try(const Node *node) {
    Tried tried = lower_parts(node);
    const char *body = lines_text(&tried.body);
    const char *handler = lines_text(&tried.handler);
    const mExpr *answer = ask_keyword("try", {body, handler, tried.identifier});
    if (answer) return put_answer(node, answer);
    if (const Node *fields = tried_fields(node)) return put_field_test(&tried, fields);
    if (only_raises_error(handler_of(node))) return put_without_handler(&tried, node);
    put_uncaught(&tried, node);
}
