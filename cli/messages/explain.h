/* What the codes of messages mean: for people at a terminal, and as a page. */
#pragma once

#include <optional>
#include <string>
#include <vector>

#include "cli/messages/message_table.h"

namespace mtranslate {

/* What the message with the code, or the short name, means; for an empty text a line for each
 * message. None where there is no such code. */
std::optional<std::string> explanation(const std::string &code);

/* The form of the message, with "..." for what differs from case to case. */
std::string general_text(const MessageRow &row);

/* What to tell the user of a code that there is not: it may name the one that was meant. */
std::string no_explanation(const std::string &code);

/* The code and the short name of every message. */
std::vector<std::string> all_codes();

/* docs/messages.md. */
std::string page_of_messages();

}  // namespace mtranslate
