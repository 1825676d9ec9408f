/* What can be known of source that the library does not read. */
#pragma once

#include <cstddef>
#include <string_view>

namespace mtranslate {

/* How many statements the text holds, as the library would count them in a tree: a block by its
 * head, a property of a class too; ends, other branches and heads of functions are none. Comments,
 * strings, brackets and continued lines are heeded; commands are not. */
std::size_t count_unread_statements(std::string_view text);

}  // namespace mtranslate
