/* The files of a batch: what the paths that the user names stand for. */
#pragma once

#include <cstddef>
#include <string>
#include <vector>

#include "cli/files/input_files.h"

namespace mtranslate {

/* The files, relative to the folder root. Throws FileError where one is not in it. */
InputFiles place_below(const std::string &root, const InputFiles &inputs);

struct InputSearch {
    std::vector<std::string> paths;
    /* Patterns as of a shell; without a slash, of a name alone. */
    std::vector<std::string> excludes;
    bool reads_ignore_files = false; /* .gitignore */
    bool stays_inside = false;       /* links that lead out of the folders are trouble */
};

struct Inputs {
    InputFiles files;
    std::size_t ignored = 0; /* files and folders that a file .gitignore leaves out */
};

/* The files that the paths name, and the files *.m of the folders that they name and of those in
 * them, in the order of the paths and, in each, of the names. Hidden files and folders, pipes
 * and devices are left out, and so is what an exclude pattern or a file .gitignore matches. A
 * folder is entered once, whatever links lead to it. What cannot be looked at is given with its
 * trouble, file or folder, and so is what lies in a file system of the kernel, as /proc, where no
 * path names one. Throws FileError where a path is not there. */
Inputs find_inputs(const InputSearch &search);

}  // namespace mtranslate
