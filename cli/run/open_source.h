/* Finding out what the source is. */
#pragma once

#include "cli/files/source.h"
#include "cli/request/options.h"

namespace mtranslate {

/* The source that the options name. Throws FileError where it, or a directory, cannot be read. */
Source open_source(const Options &options);

}  // namespace mtranslate
