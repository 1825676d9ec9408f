/* Comments in a source that leave messages about it out:
 *
 *     x = eval(s);  % mtranslate: ignore MT204, text-comparison
 *
 * at the end of the message's line, or on a line in front of the file's first statement for all of
 * the file. */
#pragma once

#include <string_view>

#include "cli/messages/message_table.h"

namespace mtranslate {

/* Whether the text of a source may have such comments. */
bool has_ignore_comments(std::string_view text);

/* Whether a comment of the text leaves out a message on the line. */
bool is_ignored(const MessageRow &message, std::string_view line, std::string_view text);

}  // namespace mtranslate
