/* The source to translate, in the form in which the library takes it. */
#pragma once

#include <memory>
#include <string>
#include <vector>

#include "cli/files.h"
#include "cli/options.h"

namespace mtranslate {

struct Source {
    /* What the library is called with: "command" or "file", and the command's text or the name of
     * the file that it opens. */
    const char *mode;
    std::string argument;
    /* What messages call the source: the file as the user named it, "<stdin>" or "<command>". */
    std::string shown_name;
    /* Its bytes, to show the line of an error. */
    std::string text;
    /* Directories of called functions, first tried first; none: the library's own choice. */
    std::vector<std::string> directories;
    /* The file that argument names when the user's own can be read only once, else null. */
    std::unique_ptr<TemporaryFile> spool;
};

/* The source that the options name. Throws FileError where it cannot be read. */
Source open_source(const Options &options);

}  // namespace mtranslate
