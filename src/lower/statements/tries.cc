// try statements: the host is asked for a form, as none is known.
#include <string.h>

#include "lower/calls/keyword_calls.h"
#include "lower/lines/gaps.h"
#include "lower/lines/lines.h"
#include "lower/lines/origins.h"
#include "lower/program/context.h"
#include "lower/program/host_words.h"
#include "lower/program/program_files.h"
#include "lower/statements/block_forms.h"
#include "lower/statements/raised_errors.h"
#include "lower/statements/statements.h"
#include "lower/statements/tried_fields.h"

namespace {

const Node *handler_of(const Node *node) {
    const Node *second = second_child(node);
    return has_flag(node, HAS_IDENTIFIER) ? second->next : second;
}

const char *identifier_of(const Node *node) {
    return has_flag(node, HAS_IDENTIFIER) ? written_name(second_child(node)->symbol) : "";
}

void put_block(const Node *block, int level) {
    Lines lines = lower_block_apart(block, level);
    append_lines(Lowering.lines, &lines);
}

// The handler as comments. One inside of another is among the lines of the outer one.
void put_handler(const Node *node, const char *why) {
    Origin *middle = CurrentOrigin;
    bool is_outermost = !Lowering.in_comment;
    Lowering.in_comment = true;
    Lines lines = lower_block_apart(handler_of(node), Lowering.level + 1);
    Lowering.in_comment = !is_outermost;
    if (!lines.first) return;
    const char *identifier = identifier_of(node);
    Origin *rest = CurrentOrigin;
    CurrentOrigin = middle;
    put_line(*identifier ? "# catch %s%s" : "# catch%s%s", {identifier, why});
    end_origin(rest);
    if (is_outermost) comment_lines(&lines, Lowering.level);
    append_lines(Lowering.lines, &lines);
}

// The body of a try that is made of a call of eval has the place of the call.
bool is_eval(const Node *node) {
    const Node *first = node->first_child->first_child;
    return first && first->offset == node->offset;
}

void report_try(MessageId id, const Node *node) {
    uint32_t length = is_eval(node) ? sizeof "eval" - 1 : sizeof "try" - 1;
    report(id, CurrentFile->source, node->offset, length);
}

// eval(text, handler) of a text that is known at run time only.
const Node *unknown_eval(const Node *node) {
    const Node *statement = is_eval(node) ? node->first_child->first_child : nullptr;
    const Node *call =
        statement && statement->kind == NODE_EXPRESSION ? statement->first_child : nullptr;
    const Node *name = call && call->kind == NODE_REFERENCE ? call->first_child : nullptr;
    bool is_call = name && name->kind == NODE_NAME && strcmp(name->text, "eval") == 0;
    return is_call ? name : nullptr;
}

// The body as if nothing failed.
void put_uncaught(const Node *node) {
    report_try(TRY_GAP, node);
    Origin *head = CurrentOrigin;
    put_line("# not translated: errors in the lines below are not caught", {});
    put_block(node->first_child, Lowering.level);
    if (head) head->kind = GAP_LINES;
    put_handler(node, "");
}

void put_field_test(const Node *node, const Node *fields) {
    put_line("if %s then", {lower_field_test(fields)});
    put_block(node->first_child, Lowering.level + 1);
    put_line("else", {});
    put_block(handler_of(node), Lowering.level + 1);
    put_line("end if;", {});
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

void put_without_handler(const Node *node) {
    report_try(REPLACED_ERROR, node);
    put_block(node->first_child, Lowering.level);
    put_handler(node, ", which only raises another error");
}

// Whether the host has a form for it, which is put.
bool put_form_of_try(const Node *node) {
    BlockPlace body = {"qxrp_body", node->first_child};
    BlockPlace handler = {"qxrp_handler", handler_of(node)};
    const char *answer =
        ask_keyword("try", {block_word(&body), block_word(&handler), identifier_of(node)});
    return answer && put_block_form(answer, {body, handler});
}

}  // namespace

void put_try(const Node *node) {
    if (put_form_of_try(node)) return;
    if (const Node *name = unknown_eval(node)) return report_gap(EVAL_GAP, name, {name->text});
    if (const Node *fields = tried_fields(node)) return put_field_test(node, fields);
    if (only_raises_error(handler_of(node))) return put_without_handler(node);
    put_uncaught(node);
}
