/* What the help and the manual page say about no single argument. */
#pragma once

#include <span>
#include <string>

namespace mtranslate {

struct ManualSection {
    const char *title;
    /* Paragraphs between empty lines; lines that begin with a blank stay as they are. */
    const char *text;
    bool is_in_help = true; /* or in the manual page alone */
};

std::span<const ManualSection> manual_sections();

}  // namespace mtranslate
