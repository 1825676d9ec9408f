/* Characters in UTF-8. */
#pragma once

#include <cstddef>
#include <string_view>

namespace mtranslate {

/* A character and its bytes. */
struct Character {
    char32_t code;
    std::size_t length;
};

/* The character at the front of text, which is not empty. A byte that begins none counts as a
 * control character. */
Character first_character(std::string_view text);

/* Characters of the text; a byte that belongs to none counts as one. */
std::size_t count_characters(std::string_view text);

}  // namespace mtranslate
