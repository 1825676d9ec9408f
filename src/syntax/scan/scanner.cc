// The scanner: which token begins at a byte, and what brackets make of blanks and line ends.
#include "syntax/scan/scanner.h"

#include <assert.h>
#include <string.h>

#include "syntax/scan/class_table.h"
#include "syntax/scan/scan_comments.h"
#include "syntax/scan/scan_literals.h"
#include "syntax/scan/spellings.h"
#include "syntax/scan/syntax_errors.h"

ScannerState Scan;
Token Current;
Place Previous;

namespace {

struct Bracket {
    uint32_t offset;
    BracketContext context;
};
Bracket Brackets[MOST_NESTED];

void open_bracket(BracketContext context) {
    assert(context != OUTSIDE_BRACKETS);
    if (Scan.depth == MOST_NESTED) return;  // the parser refuses it
    Brackets[Scan.depth++] = {Current.start, context};
    Scan.context = context;
}

void close_bracket() {
    if (Scan.depth > 0) Scan.depth--;
    Scan.context = Scan.depth > 0 ? Brackets[Scan.depth - 1].context : OUTSIDE_BRACKETS;
}

bool make_token(TokenKind kind, const char *end) {
    assert(end >= Scan.text + Current.start && end <= Scan.end);
    Current.kind = kind;
    Current.end = offset_of(end);
    Scan.at = end;
    return true;
}

bool make_operator(OperatorId op, const char *end) {
    Current.op = op;
    return make_token(TOKEN_OPERATOR, end);
}

bool make_assigning(TokenKind kind, OperatorId op, const char *end) {
    Current.assigned = op;
    return make_token(kind, end);
}

bool make_transpose(OperatorId op, const char *end) {
    Current.op = op;
    return make_token(TOKEN_TRANSPOSE, end);
}

// Keywords after a dot and in brackets are none, but for the end of an index.
void settle_keyword() {
    if (Scan.depth > 0) {
        if (Current.kind == TOKEN_END) Current.kind = TOKEN_END_INDEX;
        return;
    }
    if (opens_block(Current.kind)) Scan.openers++;
    if (Current.kind == TOKEN_FUNCTION) Scan.functions++;
    if (is_end(Current.kind)) Scan.ends++;
}

// Out of line, as others here: what they keep in registers is no burden for the other tokens.
[[gnu::noinline]] bool scan_name(const char *at) {
    const char *end = word_end(at + 1);
    const Spelling *spelling = spelling_of_bytes(at, static_cast<uint32_t>(end - at));
    Current.text = text_of(spelling);
    make_token(spelling->keyword, end);
    if (Current.kind != TOKEN_NAME) settle_keyword();
    if (spelling->soft == SOFT_EVAL) Scan.names_eval = true;
    return true;
}

// A dot that is neither an operator nor followed by a name.
bool scan_lone_dot(const char *at, bool after_operand) {
    const char *next = at + 1;
    const char *found = "'.'";
    if (after_operand)
        found = is_line_end(*next) || next == Scan.end ? "end of line"
                                                       : describe_character(next, &next);
    set_bad_token(at, at + 1);
    syntax_error(UNEXPECTED_TOKEN, Current.start, Current.end,
                 {after_operand ? "the name of a field after '.'" : "a value", found});
    return true;
}

bool scan_invalid(const char *at) {
    const char *end = at;
    const char *description = describe_character(at, &end);
    set_bad_token(at, end);
    syntax_error(INVALID_CHARACTER, Current.start, Current.end, {description});
    return true;
}

[[gnu::noinline]] bool scan_end(const char *at) {
    if (at < Scan.end) return scan_invalid(at);
    make_token(TOKEN_END_OF_FILE, at);
    return true;
}

bool scan_field(const char *at) {
    at = skip_blanks(at);
    const char *end = word_end(at);
    Current.text = text_of(spelling_of_bytes(at, static_cast<uint32_t>(end - at)));
    return make_token(TOKEN_FIELD, end);
}

// A dot after an operand that is followed by blanks and a name.
bool begins_field(const char *at) { return class_of(*skip_blanks(at)) == BYTE_LETTER; }

[[gnu::noinline]] bool scan_dot(const char *at, bool after_operand) {
    if (is_digit(at[1])) return scan_number(at);
    switch (at[1]) {
        case '*': return make_operator(OPERATOR_DOT_TIMES, at + 2);
        case '/': return make_operator(OPERATOR_DOT_DIVIDE, at + 2);
        case '\\': return make_operator(OPERATOR_DOT_LEFT_DIVIDE, at + 2);
        case '^': return make_operator(OPERATOR_DOT_POWER, at + 2);
        default: break;
    }
    if (!after_operand) return scan_lone_dot(at, false);
    if (at[1] == '\'') return make_transpose(OPERATOR_DOT_TRANSPOSE, at + 2);
    if (at[1] == '?') return make_token(TOKEN_QUESTION, at + 2);
    if (at[1] == '(') {
        open_bracket(IN_PARENTHESES);
        return make_token(TOKEN_DOT_PAREN, at + 2);
    }
    return begins_field(at + 1) ? scan_field(at + 1) : scan_lone_dot(at, true);
}

bool scan_opener(const char *at, TokenKind before) {
    if (*at == '(') {
        open_bracket(before == TOKEN_AT ? IN_PARAMETERS : IN_PARENTHESES);
        return make_token(TOKEN_OPEN_PAREN, at + 1);
    }
    open_bracket(IN_ELEMENTS);
    return make_token(*at == '[' ? TOKEN_OPEN_BRACKET : TOKEN_OPEN_BRACE, at + 1);
}

bool scan_closer(const char *at) {
    bool closes_parameters = Scan.context == IN_PARAMETERS;
    if (Scan.depth == 0) Current.flags |= CLOSES_NOTHING;
    close_bracket();
    if (*at == ']') return make_token(TOKEN_CLOSE_BRACKET, at + 1);
    if (*at == '}') return make_token(TOKEN_CLOSE_BRACE, at + 1);
    return make_token(closes_parameters ? TOKEN_CLOSE_PARAMETERS : TOKEN_CLOSE_PAREN, at + 1);
}

bool scan_equals(const char *at) {
    if (at[1] == '=') return make_operator(OPERATOR_EQUAL, at + 2);
    return make_token(TOKEN_ASSIGN, at + 1);
}

bool scan_not(const char *at) {
    if (at[1] == '=') return make_operator(OPERATOR_NOT_EQUAL, at + 2);
    return make_token(TOKEN_NOT, at + 1);
}

bool ends_statement(const char *at) {
    at = skip_blanks(at);
    switch (class_of(*at)) {
        case BYTE_SEMICOLON:
        case BYTE_COMMA:
        case BYTE_LINE:
        case BYTE_COMMENT: return true;
        default: return at == Scan.end;
    }
}

// ++ and --, which MATLAB has at the end of a statement only: elsewhere they are two signs.
bool scan_step(OperatorId op, const char *end) {
    if (Scan.depth == 0 && ends_statement(end)) return make_assigning(TOKEN_INCREMENT, op, end);
    if (Scan.language == LANGUAGE_OCTAVE) return make_assigning(TOKEN_STEP, op, end);
    return make_operator(op, end - 1);
}

// + and the like, which = or a second one may follow at the end of a target.
bool scan_arithmetic(OperatorId op, const char *at, const char *end) {
    bool assigns = Scan.depth == 0 && end[0] == '=' && end[1] != '=';
    if (assigns) return make_assigning(TOKEN_OP_ASSIGN, op, end + 1);
    bool counts = op == OPERATOR_PLUS || op == OPERATOR_MINUS;
    return counts && *end == *at ? scan_step(op, end + 1) : make_operator(op, end);
}

bool scan_comparison(OperatorId op, OperatorId op_with_equals, const char *at) {
    bool has_equals = at[1] == '=';
    return make_operator(has_equals ? op_with_equals : op, has_equals ? at + 2 : at + 1);
}

[[gnu::noinline]] bool scan_operator(const char *at) {
    bool is_double = at[1] == at[0];
    const char *next = at + 1;
    switch (*at) {
        case '+': return scan_arithmetic(OPERATOR_PLUS, at, next);
        case '-': return scan_arithmetic(OPERATOR_MINUS, at, next);
        case '/': return scan_arithmetic(OPERATOR_DIVIDE, at, next);
        case '\\': return scan_arithmetic(OPERATOR_LEFT_DIVIDE, at, next);
        case '^': return scan_arithmetic(OPERATOR_POWER, at, next);
        case '*':
            if (is_double) return scan_arithmetic(OPERATOR_POWER, at, next + 1);
            return scan_arithmetic(OPERATOR_TIMES, at, next);
        case '<': return scan_comparison(OPERATOR_LESS, OPERATOR_LESS_EQUAL, at);
        case '>': return scan_comparison(OPERATOR_GREATER, OPERATOR_GREATER_EQUAL, at);
        case '&':
            if (is_double) return make_operator(OPERATOR_AND_THEN, next + 1);
            return scan_arithmetic(OPERATOR_AND, at, next);
        case '|':
            if (is_double) return make_operator(OPERATOR_OR_ELSE, next + 1);
            return scan_arithmetic(OPERATOR_OR, at, next);
        default: assert(*at == ':'); return make_operator(OPERATOR_COLON, next);
    }
}

// Goes over a run of line ends and blanks; the token after it gets to know.
const char *skip_lines(const char *at) {
    int lines = 0;
    for (; is_line_end(*at); at = skip_blanks(at + 1)) {
        if (*at == '\n' || at[1] != '\n') lines++;
    }
    Scan.line_flags |= lines > 1 ? FIRST_ON_LINE | AFTER_BLANK_LINE : FIRST_ON_LINE;
    return at;
}

[[gnu::noinline]] bool scan_line_end(const char *at) {
    const char *next = skip_lines(at);
    Scan.at = next;
    if (Scan.context == IN_PARENTHESES || Scan.context == IN_PARAMETERS) {
        Scan.line_flags |= AFTER_LINE_END;
        return false;
    }
    make_token(Scan.depth == 0 ? TOKEN_NEWLINE : TOKEN_ROW_END, at);
    Scan.at = next;
    return true;
}

// Whether + or - after an operand and a blank is the sign of a new element.
bool is_sign(const char *at) {
    return !is_blank(at[1]) && !is_line_end(at[1]) && !is_continuation(at + 1);
}

// Whether what stands after an operand and a blank, directly in [ ] or { }, is a new element.
bool begins_element(const char *at) {
    switch (class_of(*at)) {
        case BYTE_LETTER:
        case BYTE_DIGIT:
        case BYTE_QUOTE:
        case BYTE_DOUBLE_QUOTE:
        case BYTE_OPEN:
        case BYTE_AT:
        case BYTE_QUESTION: return true;
        case BYTE_NOT: return at[1] != '=';
        case BYTE_DOT: return is_digit(at[1]);
        case BYTE_OPERATOR: return (*at == '+' || *at == '-') && is_sign(at);
        default: return false;
    }
}

bool scan_quote(const char *at, bool after_operand) {
    return after_operand ? make_transpose(OPERATOR_TRANSPOSE, at + 1) : scan_string(at);
}

// Makes the token that begins at a byte that is no blank. False: there is none, go on at Scan.at.
bool scan_token(const char *at, TokenKind before) {
    Current.start = offset_of(at);
    Current.flags = Scan.line_flags;
    Current.op = OPERATOR_NONE;
    Scan.line_flags = 0;
    switch (class_of(*at)) {
        case BYTE_LETTER: return scan_name(at);
        case BYTE_DIGIT: return scan_number(at);
        case BYTE_OPEN: return scan_opener(at, before);
        case BYTE_CLOSE: return scan_closer(at);
        case BYTE_OPERATOR: return scan_operator(at);
        case BYTE_SEMICOLON: return make_token(TOKEN_SEMICOLON, at + 1);
        case BYTE_COMMA: return make_token(TOKEN_COMMA, at + 1);
        case BYTE_LINE: return scan_line_end(at);
        case BYTE_EQUALS: return scan_equals(at);
        case BYTE_DOT: return scan_dot(at, may_end_operand(before));
        case BYTE_QUOTE: return scan_quote(at, may_end_operand(before));
        case BYTE_DOUBLE_QUOTE: return scan_string(at);
        case BYTE_COMMENT: return scan_comment(at);
        case BYTE_NOT: return scan_not(at);
        case BYTE_AT: return make_token(TOKEN_AT, at + 1);
        case BYTE_QUESTION: return make_token(TOKEN_QUESTION, at + 1);
        default: return scan_end(at);
    }
}

[[gnu::noinline]] const char *skip_continuations(const char *at) {
    while (is_continuation(at)) at = skip_blanks(skip_continuation(at));
    return at;
}

const char *skip_gap(const char *at) {
    at = skip_blanks(at);
    return *at == '.' ? skip_continuations(at) : at;
}

// The comma that a blank stands for lies directly after the operand.
void make_separator() {
    Current.start = Current.end;
    Current.kind = TOKEN_COMMA;
    Current.flags = 0;
    Current.op = OPERATOR_NONE;
}

// Goes on at Scan.at. False: what stands there is no token.
[[gnu::noinline]] bool scan_on() {
    if (Scan.block_comments > 0 && scan_block_line()) return true;
    const char *at = skip_gap(Scan.at);
    bool has_gap = at != Scan.at;
    Scan.at = at;
    if (Scan.context == IN_ELEMENTS && has_gap && may_end_operand(Scan.before) &&
        begins_element(at)) {
        make_separator();
        return true;
    }
    return scan_token(at, Scan.before);
}

}  // namespace

void advance() {
    Previous = {Current.start, Current.end};
    Scan.before = Current.kind;
    while (!scan_on()) continue;
}

void set_bad_token(const char *start, const char *end) {
    Current.start = offset_of(start);
    make_token(TOKEN_BAD, end);
}

uint32_t open_bracket_at(int32_t number) {
    assert(number >= 0 && number < MOST_NESTED);
    return Brackets[number].offset;
}

void continue_at(const char *at) {
    assert(at >= Scan.text && at <= Scan.end);
    Scan.depth = 0;
    Scan.context = OUTSIDE_BRACKETS;
    Scan.line_flags = FIRST_ON_LINE;
    Current.start = offset_of(at);
    Current.op = OPERATOR_NONE;
    make_token(TOKEN_NEWLINE, at);
}

void begin_scan(const Source *source, SourceLanguage language) {
    assert(source->text[source->length] == '\0' && "the scanner looks ahead up to there");
    const char *start = source->text;
    const char *end = start + source->length;
    if (source->length > 0 && end[-1] == '\x1a') end--;
    Scan = {};
    Scan.text = Scan.at = start;
    Scan.end = end;
    Scan.language = language;
    Scan.has_returns = memchr(start, '\r', source->length) != nullptr;
    Scan.has_nuls = memchr(start, '\0', source->length) != nullptr;
    Current = {};
    if (end - start >= 3 && memcmp(start, "\xef\xbb\xbf", 3) == 0) Scan.at += 3;
    continue_at(Scan.at);
}
