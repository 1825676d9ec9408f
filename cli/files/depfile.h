/* What outputs are made from, told to make and ninja. */
#pragma once

#include <string>
#include <vector>

#include "cli/files/files.h"

namespace mtranslate {

struct MadeFrom {
    std::string output;
    std::vector<std::string> files;
};

/* Writes a rule without a recipe for each output, and an empty one for each file, so that one
 * that is gone stops no build. Names are written as make and ninja read them; a line end in a
 * name is beyond both. Throws FileError. */
void write_depfile(const std::string &path, const std::vector<MadeFrom> &outputs);

}  // namespace mtranslate
