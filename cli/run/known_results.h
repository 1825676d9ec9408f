/* What runs over one tree find out about its files. */
#pragma once

#include <string>
#include <unordered_map>

namespace mtranslate {

/* What runs with the same index and the same rules have found out about files, by their paths: a
 * file that many call is read for it once. */
using KnownResults = std::unordered_map<std::string, std::string>;

}  // namespace mtranslate
