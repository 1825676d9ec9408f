// Numbers and strings as the host reads them.
#include "syntax/scan/scan_literals.h"

#include <assert.h>
#include <string.h>

#include "syntax/scan/class_table.h"
#include "syntax/scan/scan_comments.h"
#include "syntax/scan/scanner.h"
#include "syntax/scan/syntax_errors.h"

namespace {

bool make_literal(TokenKind kind, const char *end, const char *text) {
    assert(text && end > Scan.text + Current.start && end <= Scan.end);
    Current.kind = kind;
    Current.end = offset_of(end);
    Current.text = text;
    Current.type = nullptr;
    Scan.at = end;
    return true;
}

bool make_bad(MessageId id, const char *start, const char *end,
              std::initializer_list<const char *> operands) {
    set_bad_token(start, end);
    syntax_error(id, Current.start, Current.end, operands);
    return true;
}

const char *skip_digits(const char *at) {
    while (is_digit(*at)) at++;
    return at;
}

// Whether the dot after digits is theirs: not that of an operator, and not the first of three.
bool is_decimal_point(const char *at) {
    return *at == '.' && !strchr("*/\\^'", at[1] ? at[1] : 'x') && !is_continuation(at);
}

bool is_exponent_letter(char c) { return c == 'e' || c == 'E' || c == 'd' || c == 'D'; }

// After the exponent at a byte, which is the byte itself when there is none.
const char *skip_exponent(const char *at) {
    if (!is_exponent_letter(*at)) return at;
    const char *digits = at[1] == '+' || at[1] == '-' ? at + 2 : at + 1;
    return is_digit(*digits) ? skip_digits(digits) : at;
}

bool is_imaginary_unit(const char *at) {
    return (*at == 'i' || *at == 'j' || *at == 'I' || *at == 'J') && !is_word(at[1]);
}

// The kept text of a number; those of one digit are the same for all runs.
const char *number_text(const char *at, const char *end, const char *exponent) {
    assert(at < end && exponent <= end);
    static const char digits[][2] = {"0", "1", "2", "3", "4", "5", "6", "7", "8", "9"};
    if (end - at == 1) return digits[*at - '0'];
    char *text = keep_source(at, static_cast<size_t>(end - at));
    if (exponent != end) text[exponent - at] = 'e';
    return text;
}

bool scan_decimal(const char *at) {
    const char *end = skip_digits(at);
    Current.flags |= IS_INTEGER;
    if (is_decimal_point(end)) {
        Current.flags &= static_cast<uint8_t>(~IS_INTEGER);
        end = skip_digits(end + 1);
    }
    const char *exponent = end;
    end = skip_exponent(exponent);
    if (end != exponent) Current.flags &= static_cast<uint8_t>(~IS_INTEGER);
    const char *text = number_text(at, end, exponent);
    if (is_imaginary_unit(end)) {
        Current.flags |= IS_IMAGINARY;
        end++;
    }
    return make_literal(TOKEN_NUMBER, end, text);
}

struct IntegerType {
    const char *suffix;
    const char *name;
    int bits;
    bool is_signed;
};

const IntegerType IntegerTypes[] = {{"u8", "uint8", 8, false},    {"u16", "uint16", 16, false},
                                    {"u32", "uint32", 32, false}, {"u64", "uint64", 64, false},
                                    {"s8", "int8", 8, true},      {"s16", "int16", 16, true},
                                    {"s32", "int32", 32, true},   {"s64", "int64", 64, true}};

const IntegerType *find_type(const char *at) {
    for (const IntegerType &type : IntegerTypes) {
        size_t length = strlen(type.suffix);
        if (strncmp(at, type.suffix, length) == 0 && !is_word(at[length])) return &type;
    }
    return nullptr;
}

int digit_value(char c) {
    if (is_digit(c)) return c - '0';
    if (c >= 'a' && c <= 'f') return c - 'a' + 10;
    if (c >= 'A' && c <= 'F') return c - 'A' + 10;
    return 16;
}

// The decimal text of the bits, of a negative number in a signed type where its highest is set.
const char *decimal_text(uint64_t bits, const IntegerType *type) {
    char text[24];
    char *at = text + sizeof text;
    bool is_negative = type && type->is_signed && (bits >> (type->bits - 1) & 1);
    if (is_negative) bits = (~bits + 1) & (~uint64_t(0) >> (64 - type->bits));
    do {
        *--at = static_cast<char>('0' + bits % 10);
        bits /= 10;
    } while (bits > 0);
    if (is_negative) *--at = '-';
    return keep_bytes(at, static_cast<size_t>(text + sizeof text - at));
}

bool refuse_number(const char *at, const char *end, const char *reason) {
    while (is_word(*end)) end++;
    return make_bad(INVALID_NUMBER, at, end, {describe_bytes(at, end), reason});
}

// 0x1F or 0b101: digits of 4 bits or of 1 after two characters.
bool scan_bits(const char *at, int bits_each) {
    assert(digit_value(at[2]) < 1 << bits_each);
    const char *end = at + 2;
    uint64_t bits = 0;
    bool is_lost = false;
    for (; digit_value(*end) < 1 << bits_each; end++) {
        is_lost = is_lost || bits >> (64 - bits_each) != 0;
        bits = bits << bits_each | static_cast<uint64_t>(digit_value(*end));
    }
    const IntegerType *type = find_type(end);
    if (is_lost) return refuse_number(at, end, "it has more than 64 bits");
    if (type && type->bits < 64 && bits >> type->bits != 0)
        return refuse_number(at, end, "it has more bits than its type");
    Current.flags |= IS_INTEGER;
    make_literal(TOKEN_NUMBER, type ? end + strlen(type->suffix) : end, decimal_text(bits, type));
    Current.type = type ? type->name : nullptr;
    return true;
}

bool is_octave_escape(char c) { return Scan.language == LANGUAGE_OCTAVE && c == '\\'; }

struct ByteSet {
    bool has[256];
};

// Where a string may end, or not go on as it is: also the byte in front of which a text may end.
constexpr ByteSet string_stops() {
    ByteSet stops = {};
    for (char c : {'\'', '"', '\\', '\n', '\r', '\0', '\x1a'})
        stops.has[static_cast<unsigned char>(c)] = true;
    return stops;
}
constexpr ByteSet StringStops = string_stops();

// After the closing quote; null where the line ends before it. *plain: no quote is doubled and no
// backslash escapes.
const char *find_string_end(const char *at, bool *plain) {
    assert(*at == '\'' || *at == '"');
    char quote = *at++;
    for (*plain = true;; at++) {
        while (!StringStops.has[static_cast<unsigned char>(*at)]) at++;
        if (*at == quote) {
            if (at[1] != quote) return at + 1;
            *plain = false;
            at++;
        } else if (quote == '"' && is_octave_escape(*at)) {
            *plain = false;
            if (!is_line_end(at[1]) && at + 1 < Scan.end) at++;
        } else if (is_line_end(*at) || at == Scan.end) {
            return nullptr;
        }
    }
}

int escape_value(char letter) {
    static const char letters[] = "abfnrtv";
    static const char values[] = "\a\b\f\n\r\t\v";
    const char *found = strchr(letters, letter);
    return found && *found ? values[found - letters] : letter;
}

// The character of an escape at a letter or digit after a backslash; *at moves to its last byte.
char read_escape(const char **at) {
    bool is_hexadecimal = **at == 'x';
    int base = is_hexadecimal ? 16 : 8;
    const char *digits = is_hexadecimal ? *at + 1 : *at;
    if (digit_value(*digits) >= base) return static_cast<char>(escape_value(**at));
    int value = 0;
    int most = is_hexadecimal ? 2 : 3;
    for (; most > 0 && digit_value(*digits) < base; digits++, most--)
        value = value * base + digit_value(*digits);
    *at = digits - 1;
    return static_cast<char>(value);
}

// Undoes doubled quotes and escapes in length bytes of text, which end in a NUL.
void settle_quotes(char *text, size_t length, char quote) {
    char *to = text;
    const char *end = text + length;
    for (const char *from = text; from < end; from++) {
        char c = *from;
        if (c == quote) {
            from++;
        } else if (quote == '"' && is_octave_escape(c)) {
            from++;
            c = read_escape(&from);
        }
        *to++ = c ? c : ' ';
    }
    assert(to <= end && "what is undone is no longer than what stood there");
    *to = '\0';
}

}  // namespace

[[gnu::noinline]] static bool scan_other_number(const char *at) {
    if (*at == '0' && (at[1] == 'x' || at[1] == 'X') && digit_value(at[2]) < 16)
        return scan_bits(at, 4);
    if (*at == '0' && (at[1] == 'b' || at[1] == 'B') && digit_value(at[2]) < 2)
        return scan_bits(at, 1);
    return scan_decimal(at);
}

// Most are digits alone.
bool scan_number(const char *at) {
    const char *end = skip_digits(at);
    if (end == at || *end == '.' || is_word(*end)) return scan_other_number(at);
    Current.flags |= IS_INTEGER;
    return make_literal(TOKEN_NUMBER, end, number_text(at, end, end));
}

bool scan_string(const char *at) {
    bool plain;
    const char *end = find_string_end(at, &plain);
    if (!end) {
        const char *name = *at == '"' ? "a double quote" : "a quote";
        return make_bad(UNCLOSED_STRING, at, find_line_end(at), {name});
    }
    size_t length = static_cast<size_t>(end - at) - 2;
    char *text = keep_source(at + 1, length);
    if (!plain) settle_quotes(text, length, *at);
    if (*at == '"') Current.flags |= IS_DOUBLE_QUOTED;
    return make_literal(TOKEN_STRING, end, text);
}
