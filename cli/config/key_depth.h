/* How deep tables of a configuration would lie in each other. */
#pragma once

#include <cstddef>
#include <string_view>

namespace mtranslate {

/* Where an entry has its 257th dot outside of strings; npos for none. Each dot of a key makes a
 * table, and toml++ destroys tables by calling itself for those in them, however many. */
std::size_t find_deep_key(std::string_view text);

}  // namespace mtranslate
