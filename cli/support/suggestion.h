/* "Did you mean": the nearest of the words that there are. */
#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace mtranslate {

/* "; did you mean 'NEAREST'?", or nothing where no word of known is near. Letters' case does not
 * count. */
std::string suggestion(std::string_view word, const std::vector<std::string> &known);

}  // namespace mtranslate
