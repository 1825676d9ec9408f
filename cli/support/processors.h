/* The machine's processors. */
#pragma once

#include <cstddef>

namespace mtranslate {

/* How many there are; 1 where that is not known. */
std::size_t processors();

}  // namespace mtranslate
