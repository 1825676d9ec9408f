/* Classes of bytes: what a token may begin with, and what goes on in a name. */
#pragma once

#include <stdint.h>

enum ByteClass : uint8_t {
    BYTE_INVALID,
    BYTE_END,   /* NUL: the end of the text, or invalid */
    BYTE_BLANK, /* also tabs and form feeds */
    BYTE_LINE,  /* \n and \r */
    BYTE_LETTER,
    BYTE_DIGIT,
    BYTE_QUOTE,
    BYTE_DOUBLE_QUOTE,
    BYTE_COMMENT, /* % and # */
    BYTE_DOT,
    BYTE_OPEN,  /* ( [ { */
    BYTE_CLOSE, /* ) ] } */
    BYTE_SEMICOLON,
    BYTE_COMMA,
    BYTE_EQUALS,
    BYTE_NOT, /* ~ and ! */
    BYTE_AT,
    BYTE_QUESTION,
    BYTE_OPERATOR /* + - * / \ ^ < > & | : */
};

extern const ByteClass ByteClasses[256];

inline ByteClass class_of(char byte) { return ByteClasses[static_cast<unsigned char>(byte)]; }
inline bool is_blank(char byte) { return class_of(byte) == BYTE_BLANK; }
inline const char *skip_blanks(const char *at) {
    while (is_blank(*at)) at++;
    return at;
}
inline bool is_line_end(char byte) { return class_of(byte) == BYTE_LINE; }
inline bool is_digit(char byte) { return byte >= '0' && byte <= '9'; }
/* Whether the byte goes on in a name. */
inline bool is_word(char byte) {
    return class_of(byte) == BYTE_LETTER || class_of(byte) == BYTE_DIGIT;
}
inline bool is_continuation(const char *at) { return at[0] == '.' && at[1] == '.' && at[2] == '.'; }
/* The end of the word at a byte: after the last of the bytes that a name may have. */
inline const char *word_end(const char *at) {
    while (is_word(*at)) at++;
    return at;
}
