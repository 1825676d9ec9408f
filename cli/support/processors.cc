/* Counting processors. */
#include "cli/support/processors.h"

#include <algorithm>
#include <thread>

namespace mtranslate {

std::size_t processors() { return std::max(1U, std::thread::hardware_concurrency()); }

}  // namespace mtranslate
