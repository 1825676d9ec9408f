/* The source to translate, in the form in which the library takes it. */
#pragma once

#include <string>
#include <vector>

#include "cli/files/files.h"

namespace mtranslate {

struct Source {
    /* What the library is called with: "command" or "file", and the command's text or the name of
     * the file that it opens. */
    const char *mode;
    std::string argument;
    /* What messages call the source: the file as the user named it, "<stdin>" or "<command>". */
    std::string shown_name;
    /* Directories of called functions, first tried first; none: the library's own choice. */
    std::vector<std::string> directories;
    /* The user's file; none for a command. */
    FilesRead files;
    /* The copy that argument names when the user's own can be read only once. */
    Descriptor copy;
};

}  // namespace mtranslate
