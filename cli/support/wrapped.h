/* Texts in lines that fit on a terminal. */
#pragma once

#include <cstddef>
#include <string>

namespace mtranslate {

/* The words of the text in lines of at most 80 columns, each but the first after that many blanks.
 * The first begins in the column of the others. */
std::string wrapped(const std::string &text, std::size_t indent = 0);

}  // namespace mtranslate
