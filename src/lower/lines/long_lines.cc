// Long lines of host text.
#include "lower/lines/long_lines.h"

#include <string.h>

#include "emit/output.h"

namespace {

// A line that is being read, outside of strings and names: what has been opened in front of at.
struct Reader {
    const char *at;
    int depth;
    const char *line;
};

// What holds a line together more than a bracket does: a procedure in an expression, and the target
// of an assignment.
constexpr int HELD = 2;

bool is_at_word(const char *at, const char *word) {
    size_t length = strlen(word);
    return strncmp(at, word, length) == 0;
}

// What a byte means to a reader. What may stand where code ends is never plain.
enum ByteMeaning : uint8_t { PLAIN, QUOTES, OPENS, CLOSES, COMMA, BLANK, ENDS_CODE };

struct ByteMeanings {
    ByteMeaning of[256];
};

constexpr ByteMeanings byte_meanings() {
    ByteMeanings meanings = {};
    meanings.of[static_cast<unsigned char>(',')] = COMMA;
    meanings.of[static_cast<unsigned char>(' ')] = BLANK;
    for (char c : {'\0', '\n', '#'}) meanings.of[static_cast<unsigned char>(c)] = ENDS_CODE;
    for (char c : {'"', '`', '\''}) meanings.of[static_cast<unsigned char>(c)] = QUOTES;
    for (char c : {'(', '[', '{'}) meanings.of[static_cast<unsigned char>(c)] = OPENS;
    for (char c : {')', ']', '}'}) meanings.of[static_cast<unsigned char>(c)] = CLOSES;
    return meanings;
}

constexpr ByteMeanings Meanings = byte_meanings();

ByteMeaning meaning_of(char c) { return Meanings.of[static_cast<unsigned char>(c)]; }

bool is_after_word(const char *at, const char *line, const char *word) {
    size_t length = strlen(word);
    return at - line >= static_cast<ptrdiff_t>(length) && memcmp(at - length, word, length) == 0;
}

// What an opening bracket adds, the head of a procedure's too.
int opened_depth(const char *at, const char *line) {
    bool is_head = *at == '(' && is_after_word(at, line, "proc");
    return is_head ? 1 + HELD : 1;
}

// Whether a blank stands in the end of a procedure.
bool ends_procedure(const char *at, const char *line) {
    return at[1] == 'p' && is_after_word(at, line, "end") && is_at_word(at, " proc");
}

// The end of the string or name that begins at a quote. Only strings have backslashes.
const char *end_of_quoted(const char *at) {
    const char *stops = *at == '"' ? "\"\\" : *at == '`' ? "`" : "'";
    at++;
    while (*(at += strcspn(at, stops)) == '\\') at += at[1] ? 2 : 1;
    return *at ? at + 1 : at;
}

// How tight an operator binds, from 1; 0 for what is none.
int tightness_of(const char *word, size_t length) {
    bool is_elementwise = length == 2 && word[1] == '~';
    bool is_relation = length == 2 && (word[1] == '=' || word[1] == '>');
    if (length > 1 && !is_elementwise && !is_relation)
        return strncmp(word, "or ", 3) == 0 ? 1 : strncmp(word, "and ", 4) == 0 ? 2 : 0;
    switch (*word) {
        case '<':
        case '>':
        case '=': return 3;
        case '+':
        case '-': return 4;
        case '*':
        case '/':
        case '.': return 5;
        case '^': return 6;
        default: return 0;
    }
}

// A place where a line may end: the smaller, the better.
constexpr int TIGHTEST = 8;
constexpr int NO_PLACE = -1;
constexpr size_t LONGEST_OPERATOR = 3;

bool is_name_character(char c) {
    return c == '_' || (c >= '0' && c <= '9') || (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z');
}

// Whether the bracket in front opens the arguments of a call that is no part of a longer form. A
// text is not put into a line of its own.
bool opens_arguments(const char *at, const char *start) {
    if (strchr(")[\"`", *at)) return false;
    const char *end = at - 1;
    if (end > start && end[-1] == ']') {
        while (end > start && *end != '[') end--;
        return end - start >= 3 && is_at_word(end - 3, "QXR");
    }
    const char *word = end;
    while (word > start && is_name_character(word[-1])) word--;
    if (word == end) return false;
    for (const char *form :
         {"eval(", "evalhf(", "zip(", "map(", "seq(", "rtable(", "copy(", "proc("})
        if (is_at_word(word, form)) return false;
    return true;
}

// That in front of what is read next: after a comma, before an operator, and where these are deeper
// inside, after the bracket of an outermost call.
inline int place_at(const Reader *from, const char *start) {
    if (from->at == start) return NO_PLACE;
    if (from->at[-1] == '(' && from->depth == 1 && opens_arguments(from->at, start))
        return TIGHTEST + TIGHTEST - 1;
    bool is_after_comma = from->at[-1] == ',';
    if (!is_after_comma && *from->at != ' ') return NO_PLACE;
    if (is_after_comma) return from->depth * TIGHTEST;
    const char *word = from->at + 1;
    size_t length = 0;
    while (length < LONGEST_OPERATOR && word[length] && word[length] != ' ') length++;
    if (word[length] != ' ') return NO_PLACE;
    int tightness = tightness_of(word, length);
    return tightness > 0 ? from->depth * TIGHTEST + tightness : NO_PLACE;
}

// To where a line may end next: after a comma or a parenthesis, or at a blank; else to the end of
// the code.
void read_on(Reader *from) {
    const char *at = from->at;
    if (*at == ' ') {
        if (ends_procedure(at, from->line)) from->depth -= HELD;
        at++;
    }
    for (bool may_end = false; !may_end;) {
        while (meaning_of(*at) == PLAIN) at++;
        switch (meaning_of(*at)) {
            case QUOTES: at = end_of_quoted(at); break;
            case CLOSES: from->depth--, at++; break;
            case OPENS:
                from->depth += opened_depth(at, from->line);
                may_end = *at++ == '(';
                break;
            case COMMA: at++, may_end = true; break;
            default: may_end = true;
        }
    }
    from->at = at;
}

// Whether a row of a matrix begins where one ends that the line has begun inside.
bool is_between_rows(const Reader *from, int place, int outer) {
    return place < outer * TIGHTEST && from->at[0] == ' ' && from->at[1] == '[';
}

// Where the next line begins, which is read from there; at null: nowhere. The outermost place at
// the loosest operator counts that leaves no short line, else the last one, or the first after the
// limit.
Reader find_break(Reader from, const char *end, const char *limit) {
    const char *start = from.at;
    int outer = from.depth;
    const char *early = start + (limit - start) * 2 / 5;
    Reader best = {nullptr, 0, from.line};
    int best_place = NO_PLACE;
    for (; from.at < end && !(from.at > limit && best.at); read_on(&from)) {
        int place = place_at(&from, start);
        if (place == NO_PLACE || (best.at >= early && best.at && place > best_place)) continue;
        best = from;
        best_place = place;
        if (is_between_rows(&from, place, outer)) break;
    }
    while (best.at && *best.at == ' ') best.at++;
    return best;
}

// Where the code of a line ends, in front of a comment and the blank before it.
const char *end_of_code(const char *line) {
    const char *at = line;
    while (*(at += strcspn(at, "\n#\"`'")) && *at != '\n' && *at != '#') at = end_of_quoted(at);
    bool has_blank = *at == '#' && at > line && at[-1] == ' ';
    return has_blank ? at - 1 : at;
}

const char *end_of_line(const char *code) {
    const char *end = strchr(code, '\n');
    return end ? end : code + strlen(code);
}

void write_line_end(uint32_t margin) {
    write_character('\n');
    write_blanks(margin);
}

// Behind the sign of an assignment that stands in front of the limit, or null.
const char *value_of_line(const char *line, const char *limit) {
    for (Reader from = {line, 0, line}; from.at < limit; read_on(&from)) {
        bool may_be_sign = *from.at == ' ' && from.depth == 0;
        if (may_be_sign && is_at_word(from.at, " := ")) return from.at + 3;
    }
    return nullptr;
}

// The value of the line if it is to stand alone, else null: it fits into a line, as its target
// does, and the target would have to be broken, or the value deep inside.
const char *value_alone(const char *line, const char *end, const Reader *next, uint32_t margin) {
    ptrdiff_t width = LONGEST_LINE - margin;
    ptrdiff_t next_width = width - static_cast<ptrdiff_t>(CONTINUATION);
    if (!next->at || end - line > 2 * width) return nullptr;
    const char *value = value_of_line(line, line + width);
    if (!value || end - value > next_width || value - line > width) return nullptr;
    if (is_at_word(value, " proc(")) return nullptr;
    bool breaks_inside = next->at < value || next->depth > 1 || next->at[-1] == '(';
    return breaks_inside ? value : nullptr;
}

void write_code(const char *line, const char *end, uint32_t margin) {
    Reader from = {line, 0, line};
    uint32_t deeper = margin + CONTINUATION;
    while (end - from.at + margin > LONGEST_LINE && margin < LONGEST_LINE) {
        Reader next = find_break(from, end, from.at + (LONGEST_LINE - margin));
        const char *value = from.at == line ? value_alone(line, end, &next, margin) : nullptr;
        if (value) next = {value + 1, 0, line};
        if (!next.at || next.at >= end) break;
        const char *last = next.at;
        while (last[-1] == ' ') last--;
        write_output(from.at, last);
        margin = deeper;
        write_line_end(margin);
        from = next;
    }
    write_output(from.at, end);
}

}  // namespace

bool is_short_line(const char *text, size_t length, size_t margin) {
    return length + margin <= LONGEST_LINE && !memchr(text, '\n', length);
}

void write_broken(const char *text, uint32_t margin) {
    for (;;) {
        const char *code = end_of_code(text);
        const char *end = *code == '\n' ? code : end_of_line(code);
        write_code(text, code, margin);
        write_output(code, end);
        if (!*end) return;
        margin = static_cast<uint32_t>(strspn(end + 1, " "));
        write_line_end(margin);
        text = end + 1 + margin;
    }
}
