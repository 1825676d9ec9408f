/* One run of the library for the tool. */
#pragma once

#include <string>

#include "cli/exit_code.h"
#include "cli/source.h"

namespace mtranslate {

struct Translation {
    ExitCode code;
    /* The translation after Done, else the lines that tell the user about the error. */
    std::string text;
    /* Every file that the run has opened, its source first. */
    FilesRead files_read;
};

/* Translates source in a host that answers no questions. without_translator sets the library's
 * option AddTranslator to false. Throws FileError where a called file can be no source. */
Translation translate(const Source &source, bool without_translator);

}  // namespace mtranslate
