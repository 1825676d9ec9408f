// Long lines of host text.
#include "lower/long_lines.h"

#include <string.h>

#include "translate/text_forms.h"

namespace {

constexpr uint32_t INDENT = 4;

// A line that is being read: what has been opened in front of at.
struct Reader {
    const char *at;
    int depth;
    char quote;  // of the string or name around; 0 for none
};

void read_character(Reader *from) {
    char c = *from->at++;
    if (from->quote) {
        if (c == '\\' && from->quote == '"' && *from->at) from->at++;
        if (c == from->quote) from->quote = 0;
    } else if (c == '"' || c == '`' || c == '\'') {
        from->quote = c;
    } else if (c == '(' || c == '[' || c == '{') {
        from->depth++;
    } else if (c == ')' || c == ']' || c == '}') {
        from->depth--;
    }
}

bool is_operator(const char *word, size_t length) {
    static const char *const operators[] = {"+",  "-",  "*",  "/",   ".",  "^",  "+~",
                                            "-~", "*~", "/~", "^~",  "<>", "<=", ">",
                                            "<",  ">=", "=",  "and", "or"};
    for (const char *one : operators)
        if (strlen(one) == length && memcmp(one, word, length) == 0) return true;
    return false;
}

// Whether a line may end in front of what is read next: after a comma, before an operator.
bool may_break(const Reader *from, const char *start) {
    if (from->quote || from->at == start) return false;
    if (from->at[-1] == ',') return true;
    if (*from->at != ' ') return false;
    size_t length = strcspn(from->at + 1, " \n");
    return from->at[1 + length] == ' ' && is_operator(from->at + 1, length);
}

// Where the next line begins, which is read from there; at null: nowhere. The outermost place
// counts that leaves no short line, else the last one, or the first behind the limit.
Reader find_break(Reader from, const char *end, const char *limit) {
    const char *start = from.at;
    const char *early = start + (limit - start) * 2 / 5;
    Reader best = {nullptr, 0, 0};
    for (; from.at < end && !(from.at > limit && best.at); read_character(&from)) {
        if (!may_break(&from, start)) continue;
        if (!best.at || best.at < early || from.depth <= best.depth) best = from;
    }
    while (best.at && *best.at == ' ') best.at++;
    return best;
}

// Where the code of a line ends, in front of a comment and the blank before it.
const char *end_of_code(const char *line) {
    Reader from = {line, 0, 0};
    while (*from.at && (from.quote || (*from.at != '\n' && *from.at != '#'))) read_character(&from);
    bool has_blank = *from.at == '#' && from.at > line && from.at[-1] == ' ';
    return has_blank ? from.at - 1 : from.at;
}

const char *end_of_line(const char *code) {
    const char *end = strchr(code, '\n');
    return end ? end : code + strlen(code);
}

// Counts what it is given, and writes it where to is not null.
struct Sink {
    Writer *to;
    size_t size;
};

void put(Sink *sink, const char *start, const char *end) {
    size_t length = static_cast<size_t>(end - start);
    if (sink->to) write_bytes(sink->to, start, length);
    sink->size += length;
}

void put_line_end(Sink *sink, uint32_t margin) {
    sink->size += 1 + margin;
    if (!sink->to) return;
    write_character(sink->to, '\n');
    for (; margin > 0; margin--) write_character(sink->to, ' ');
}

void put_code(Sink *sink, const char *line, const char *end, uint32_t margin) {
    Reader from = {line, 0, 0};
    uint32_t deeper = margin + INDENT;
    while (end - from.at + margin > LONGEST_LINE && margin < LONGEST_LINE) {
        Reader next = find_break(from, end, from.at + (LONGEST_LINE - margin));
        if (!next.at || next.at >= end) break;
        const char *last = next.at;
        while (last[-1] == ' ') last--;
        put(sink, from.at, last);
        margin = deeper;
        put_line_end(sink, margin);
        from = next;
    }
    put(sink, from.at, end);
}

void put_broken(Sink *sink, const char *text, uint32_t margin) {
    for (;;) {
        const char *code = end_of_code(text);
        const char *end = *code == '\n' ? code : end_of_line(code);
        put_code(sink, text, code, margin);
        put(sink, code, end);
        if (!*end) break;
        margin = static_cast<uint32_t>(strspn(end + 1, " "));
        put_line_end(sink, margin);
        text = end + 1 + margin;
    }
}

}  // namespace

const char *break_line(const char *text, uint32_t margin) {
    size_t length = strlen(text);
    if (length + margin <= LONGEST_LINE) return text;
    Sink count = {nullptr, 0};
    put_broken(&count, text, margin);
    if (count.size == length) return text;
    Writer to = new_text(count.size + 1);
    const char *broken = to.at;
    Sink sink = {&to, 0};
    put_broken(&sink, text, margin);
    return broken;
}
