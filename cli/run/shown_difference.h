/* Differences, for people. */
#pragma once

#include <string>
#include <string_view>

namespace mtranslate {

/* The difference for a terminal: printable, and with colours if they are wanted. */
std::string shown_difference(std::string_view difference, bool has_colours);

}  // namespace mtranslate
