/* Comments in a source that leave messages about it out:
 *
 *     x = eval(s);  % mtranslate: ignore MT204, text-comparison
 *
 * at the end of the message's line, or on a line in front of the file's first statement for all of
 * the file. */
#pragma once

#include "cli/support/library.h"

namespace mtranslate {

/* Whether the source may have such comments. */
bool has_ignore_comments(const ::Source &source);

/* Whether a comment leaves the message out. */
bool is_ignored(const Message &message);

}  // namespace mtranslate
