// What cannot be translated.
#include "lower/lines/gaps.h"

#include <assert.h>
#include <string.h>

#include "lower/lines/origins.h"
#include "lower/lines/pieces.h"
#include "lower/program/context.h"
#include "lower/program/program_files.h"
#include "support/allocation.h"

void report_at(MessageId id, const Node *node, std::initializer_list<const char *> operands) {
    assert(end_of(node) <= CurrentFile->source->length && "the node is of another file");
    report(id, CurrentFile->source, node->offset, node->length, operands);
}

void report_gap(MessageId id, const Node *node, std::initializer_list<const char *> operands) {
    assert(is_failure(id));
    report_at(id, node, operands);
    if (Lowering.gap == MESSAGE_COUNT) Lowering.gap = id;
}

static const char GAP_LINE[] = "# not translated (%s %s): %s";

bool is_gap_line(const Line *line) {
    return strncmp(line->text, GAP_LINE, strcspn(GAP_LINE, "%")) == 0;
}

namespace {

bool is_line_end(char c) { return c == '\n' || c == '\r'; }

bool is_blank(char c) { return c == ' ' || c == '\t'; }

// Lines of the source from the offset on, one after the other.
struct SourceLines {
    const char *at;
    const char *end;
};

const char *next_line(SourceLines *lines) {
    const char *start = lines->at;
    const char *end = start;
    while (end < lines->end && !is_line_end(*end)) end++;
    lines->at = end;
    if (lines->at < lines->end && *lines->at == '\r') lines->at++;
    if (lines->at < lines->end && *lines->at == '\n') lines->at++;
    while (end > start && is_blank(end[-1])) end--;
    return KeepText(start, static_cast<size_t>(end - start));
}

}  // namespace

void put_gap(const Node *node, MessageId id) {
    assert(end_of(node) <= CurrentFile->source->length);
    note_piece(node, SOURCE_IS_PUT);
    Origin *outer = begin_origin(GAP_LINES, node);
    const MessageRow *row = &MessageTable[id];
    const char *source = CurrentFile->source->text;
    SourceLines lines = {source + node->offset, source + end_of(node)};
    put_line(GAP_LINE, {row->code, row->name, next_line(&lines)});
    while (lines.at < lines.end) {
        const char *line = next_line(&lines);
        put_line("%s%s", {*line ? "# " : "#", line});
    }
    end_origin(outer);
}

// The error stands within the node, or right after it where something is missing.
static MessageId error_in(const Node *node) {
    for (const Message *message = FirstMessage; message; message = message->next) {
        bool is_here = message->source == CurrentFile->source && message->offset >= node->offset &&
                       message->offset <= end_of(node);
        if (is_here && severity_of(message->id) == SEVERITY_ERROR) return message->id;
    }
    return UNEXPECTED_TOKEN;
}

void put_bad(const Node *node) {
    assert(node->kind == NODE_BAD);
    put_gap(node, error_in(node));
}
