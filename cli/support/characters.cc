#include "cli/support/characters.h"

namespace mtranslate {

namespace {

unsigned char byte_at(std::string_view text, std::size_t at) {
    return static_cast<unsigned char>(text[at]);
}

bool continues(unsigned char byte) { return (byte & 0xC0) == 0x80; }

/* Bytes of the UTF-8 character that begins with the byte; 1 for a byte that begins none. */
std::size_t length_by(unsigned char first) {
    if (first < 0xC2 || first > 0xF4) return 1;
    return first < 0xE0 ? 2 : first < 0xF0 ? 3 : 4;
}

/* False for overlong forms and surrogates. */
bool is_valid(char32_t code, std::size_t length) {
    const bool is_overlong = (length == 3 && code < 0x800) || (length == 4 && code < 0x10000);
    const bool is_surrogate = code >= 0xD800 && code < 0xE000;
    return !is_overlong && !is_surrogate && code < 0x110000;
}

}  // namespace

Character first_character(std::string_view text) {
    const unsigned char first = byte_at(text, 0);
    const std::size_t length = length_by(first);
    if (length == 1) return {first < 0x80 ? first : U'\0', 1};
    if (length > text.size()) return {U'\0', 1};
    char32_t code = first & (0x7Fu >> length);
    for (std::size_t i = 1; i < length; ++i) {
        if (!continues(byte_at(text, i))) return {U'\0', 1};
        code = code << 6 | (byte_at(text, i) & 0x3F);
    }
    return is_valid(code, length) ? Character{code, length} : Character{U'\0', 1};
}

std::size_t count_characters(std::string_view text) {
    std::size_t count = 0;
    for (; !text.empty(); ++count) {
        const bool is_ascii = byte_at(text, 0) < 0x80;
        text.remove_prefix(is_ascii ? 1 : first_character(text).length);
    }
    return count;
}

}  // namespace mtranslate
