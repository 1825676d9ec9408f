/* The form of host text, as far as it can be checked without knowing what it means. */
#pragma once

#include <string>
#include <string_view>

namespace mtranslate {

/* The translation with each long line, which goes on in others after a comma, := or a bracket or in
 * front of an operator, as one line. */
std::string with_whole_lines(std::string_view host_text);

/* What is wrong with a translation, as "line N: ..."; empty when nothing is. Brackets and quotes
 * match, each block has its end, a line of code ends with its statement or its head, and each line
 * is indented by the blocks around it. */
std::string form_error(std::string_view host_text);

/* The translation without its comments, the text of a block's gap included, and without empty
 * lines. */
std::string without_comments(std::string_view host_text);

}  // namespace mtranslate
