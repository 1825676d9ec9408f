/* Host texts, as far as rules have to read them. */
#pragma once

#include <string>
#include <string_view>

namespace mtranslate {

/* Whether the host takes the text for one operand wherever it stands: a number, a text, a name, a
 * call or a pair of brackets; not where it has an operator, a comma or a blank outside brackets. */
bool is_operand(std::string_view text);
/* The text, in parentheses where it is no operand. */
std::string as_operand(const std::string &text);

/* Whether the text begins with a word of statements, such as if, or has a line end, a semicolon or
 * an assignment outside brackets. A procedure is a value, whatever its body holds. */
bool is_statements(std::string_view text);

/* Where a bracket or a quote stands that is unmatched; npos for none. */
std::size_t find_lone_half(std::string_view text);

/* Whether the text is a name of the host's, alone or with the modules that it is a member of. */
bool is_host_name(std::string_view text);

}  // namespace mtranslate
