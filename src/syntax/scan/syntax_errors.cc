// Errors of the source, and the words for what was read.
#include "syntax/scan/syntax_errors.h"

#include <assert.h>
#include <stdio.h>
#include <string.h>

#include "syntax/scan/class_table.h"
#include "syntax/scan/scanner.h"

bool Failed;
Token FailedToken;
bool Skipping;
uint32_t StatementStart;

namespace {

struct NotedError {
    MessageId id;
    uint32_t start;
    uint32_t end;
    MessageText said;
};

NotedError Noted[MOST_ERRORS];
int32_t NotedCount;
Source *NotedSource;

constexpr size_t LONGEST_SHOWN = 40;

size_t first_line_length(const char *start, size_t length) {
    size_t line = 0;
    while (line < length && !is_line_end(start[line])) line++;
    return line;
}

// At most so many bytes that no character of UTF-8 is cut, and none of a second line.
size_t shown_length(const char *start, size_t length) {
    size_t shown = first_line_length(start, length);
    if (shown <= LONGEST_SHOWN) return shown;
    shown = LONGEST_SHOWN - 3;
    while (shown > 0 && (static_cast<unsigned char>(start[shown]) & 0xc0) == 0x80) shown--;
    return shown;
}

bool is_at_line_end(TokenKind kind) {
    return kind == TOKEN_NEWLINE || kind == TOKEN_ROW_END || kind == TOKEN_COMMENT;
}

// What stands after a line end within parentheses shows that the line should have ended them.
bool is_after_line_end() { return (Current.flags & AFTER_LINE_END) && Current.kind != TOKEN_BAD; }

// What stands directly after a closing quote is mostly text that the quote should not close.
bool is_after_quote() {
    char last = Previous.end > 0 ? Scan.text[Previous.end - 1] : ' ';
    bool is_word = Current.kind == TOKEN_NAME || Current.kind == TOKEN_NUMBER;
    return is_word && Current.start == Previous.end && (last == '\'' || last == '"');
}

const char *found_text() {
    if (is_after_line_end() && Current.kind != TOKEN_END_OF_FILE) return "end of line";
    const char *token = describe_token();
    if (!is_after_quote()) return token;
    return join({token, " after a quote (inside a string a quote is written twice)"});
}

// Line ends, and the end of the file, are marked after what stands before them.
Place found_place() {
    bool is_end = is_at_line_end(Current.kind) || Current.kind == TOKEN_END_OF_FILE;
    if (is_end || is_after_line_end()) return {Previous.end, Previous.end};
    return {Current.start, Current.end};
}

void fail() {
    Failed = true;
    FailedToken = Current;
    Current.kind = TOKEN_BAD;
    Current.op = OPERATOR_NONE;
}

// The number of bytes of a well-formed character beyond ASCII, or 0.
int character_length(const char *at) {
    unsigned char lead = static_cast<unsigned char>(*at);
    int length = lead >= 0xf0 && lead < 0xf5 ? 4 : lead >= 0xe0 && lead < 0xf0 ? 3 : 2;
    if (lead < 0xc2 || lead >= 0xf5) return 0;
    for (int i = 1; i < length; i++) {
        if ((static_cast<unsigned char>(at[i]) & 0xc0) != 0x80) return 0;
    }
    return length;
}

struct CharacterHint {
    const char *bytes;
    const char *hint;
};

const CharacterHint CharacterHints[] = {
    {"\xe2\x80\x98", ": write a plain quote '"},
    {"\xe2\x80\x99", ": write a plain quote '"},
    {"\xc2\xb4", ": write a plain quote '"},
    {"\xe2\x80\x9c", ": write a plain quote \""},
    {"\xe2\x80\x9d", ": write a plain quote \""},
    {"\xe2\x80\x93", ": write a plain -"},
    {"\xe2\x80\x94", ": write a plain -"},
    {"\xe2\x88\x92", ": write a plain -"},
    {"\xc3\x97", ": write *"},
    {"\xe2\x80\xa6", ": write three dots"},
    {"\xc2\xa0", " (a special blank): write a plain one"},
    {"\xe2\x80\x8b", " (a blank of no width): take it out"},
    {"\xef\xbb\xbf", " (a byte-order mark): take it out"},
};

const char *hint_of(const char *character) {
    for (const CharacterHint &row : CharacterHints) {
        if (strcmp(row.bytes, character) == 0) return row.hint;
    }
    return "";
}

const char *describe_byte(char byte) {
    char text[24];
    snprintf(text, sizeof text, "of code 0x%02X", static_cast<unsigned char>(byte));
    return keep_bytes(text, strlen(text));
}

}  // namespace

void begin_errors(Source *source) {
    NotedSource = source;
    NotedCount = 0;
    Failed = Skipping = false;
}

bool is_silent() { return Skipping || NotedCount == MOST_ERRORS; }

void note_error(MessageId id, uint32_t start, uint32_t end,
                std::initializer_list<const char *> operands) {
    assert(start <= end && end <= NotedSource->length);
    if (is_silent()) return;
    Noted[NotedCount++] = {id, start, end, message_text(id, operands)};
}

void syntax_error(MessageId id, uint32_t start, uint32_t end,
                  std::initializer_list<const char *> operands) {
    if (Failed || Skipping) return;
    note_error(id, start, end, operands);
    fail();
}

void unexpected_token(const char *expected) {
    if (Failed) return;
    Place place = found_place();
    syntax_error(UNEXPECTED_TOKEN, place.start, place.end, {expected, found_text()});
}

// What a value is missing after. Two signs look like a ++ that is used as a value.
static const char *value_after(const char *start, const char *end) {
    if (start == end) return "a value";
    bool is_sign = end - start == 1 && (*start == '+' || *start == '-');
    bool is_double = is_sign && start > Scan.text && start[-1] == *start;
    const char *shown = describe_bytes(is_double ? start - 1 : start, end);
    return join({"a value after ", shown, is_double ? " (as x++ it is a statement only)" : ""});
}

void expected_value() {
    if (Failed) return;
    if (Current.kind == TOKEN_END_INDEX) {
        syntax_error(END_OUTSIDE_INDEX, Current.start, Current.end);
    } else if (Current.start == StatementStart) {
        unexpected_token("a statement");
    } else {
        unexpected_token(value_after(Scan.text + Previous.start, Scan.text + Previous.end));
    }
}

void unclosed_bracket(const char *closer, uint32_t opener) {
    if (Failed) return;
    Place place = found_place();
    const char *bracket = keep_bytes(Scan.text + opener, 1);
    syntax_error(UNCLOSED_BRACKET, place.start, place.end,
                 {closer, bracket, line_number_text(opener), found_text()});
}

void move_error_to_line_end(uint32_t line_end, const char *closer, uint32_t opener) {
    assert(opener <= line_end && line_end <= NotedSource->length);
    if (NotedCount == 0) return;
    const char *bracket = keep_bytes(Scan.text + opener, 1);
    Noted[NotedCount - 1] = {
        UNCLOSED_BRACKET, line_end, line_end,
        message_text(UNCLOSED_BRACKET, {closer, bracket, line_number_text(opener), "end of line"})};
}

void report_errors() {
    for (int32_t i = 1; i < NotedCount; i++) {
        NotedError error = Noted[i];
        int32_t to = i;
        for (; to > 0 && Noted[to - 1].start > error.start; to--) Noted[to] = Noted[to - 1];
        Noted[to] = error;
    }
    for (int32_t i = 0; i < NotedCount; i++) {
        const NotedError *error = &Noted[i];
        report_text(error->id, NotedSource, error->start, error->end - error->start, &error->said);
    }
    NotedCount = 0;
}

bool forget_errors() {
    bool has_errors = NotedCount > 0;
    NotedCount = 0;
    return has_errors;
}

const char *describe_bytes(const char *start, const char *end) {
    assert(start <= end);
    size_t length = static_cast<size_t>(end - start);
    size_t shown = shown_length(start, length);
    return join({"'", keep_bytes(start, shown), shown < length ? "...'" : "'"});
}

const char *describe_token() {
    const char *start = Scan.text + Current.start;
    const char *end = Scan.text + Current.end;
    switch (Current.kind) {
        case TOKEN_END_OF_FILE: return "end of file";
        case TOKEN_NEWLINE:
        case TOKEN_ROW_END:
        case TOKEN_COMMENT: return "end of line";
        case TOKEN_NAME: return join({"name ", describe_bytes(start, end)});
        case TOKEN_NUMBER: return join({"number ", describe_bytes(start, end)});
        case TOKEN_STRING: return join({"string ", describe_bytes(start + 1, end - 1)});
        default: break;
    }
    const char *quoted = describe_bytes(start, end);
    return Current.flags & CLOSES_NOTHING ? join({quoted, " that closes nothing"}) : quoted;
}

const char *describe_character(const char *at, const char **end) {
    int length = character_length(at);
    *end = at + (length > 0 ? length : 1);
    bool is_plain = length == 0 && *at > ' ' && *at < 0x7f;
    if (length == 0 && !is_plain) return describe_byte(*at);
    const char *character = keep_bytes(at, static_cast<size_t>(*end - at));
    return join({"'", character, "'", hint_of(character)});
}

const char *join(std::initializer_list<const char *> parts) {
    size_t size = 1;
    for (const char *part : parts) size += strlen(part);
    char *text = static_cast<char *>(take_bytes(size));
    char *to = text;
    for (const char *part : parts) to = stpcpy(to, part);
    return text;
}

const char *line_number_text(uint32_t offset) {
    char text[16];
    snprintf(text, sizeof text, "%u", position_of(NotedSource, offset).line);
    return keep_bytes(text, strlen(text));
}
