/* What would change in a file. */
#pragma once

#include <string>
#include <string_view>

namespace mtranslate {

/* The unified diff from the file's text, which may be missing, to the new one; empty where they are
 * the same. Made by the program diff; throws FileError where that does not work. */
std::string difference(const std::string &path, std::string_view text);

/* Whether the difference is that of a file that is missing. */
bool is_of_new_file(std::string_view difference);

}  // namespace mtranslate
