/* Where the pages about messages are. */
#pragma once

#include <string>
#include <string_view>

#include "cli/messages/message_table.h"

namespace mtranslate {

/* The path as a reference of a URI. */
std::string uri_of(std::string_view path);

/* The folder of the pages that were installed with the tool, wherever the two are by now, or what
 * the build named in its place; a URI without a slash at its end. */
std::string pages_uri();
/* The URI of the message's section. */
std::string uri_of_explanation(const MessageRow &row);
/* Whether a reader of this machine finds it: always, unless it is a file that is not there. */
bool has_explanations();

}  // namespace mtranslate
