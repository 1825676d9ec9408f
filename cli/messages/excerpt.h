/* Lines of sources as a terminal can show them, with a range marked. */
#pragma once

#include <cstddef>
#include <string>
#include <string_view>

namespace mtranslate {

/* Two lines: the text, and marks under its bytes from begin up to end, as in
 *
 *     x = [1, 2
 *         ^~~~~
 *
 * A caret stands under the first byte also where the range is empty, or begins after the text. Of
 * a long line the 120 columns around the caret are shown, "..." for the rest. A character takes one
 * column, a tab stays a tab in both lines, and what would not show, or would steer the terminal, is
 * written byte by byte as \xNN. */
std::string excerpt(std::string_view line, std::size_t begin, std::size_t end);

/* The text with the same escapes, and those of tabs and line ends. */
std::string printable(std::string_view text);

}  // namespace mtranslate
