/* How the tool ends, for shells and build rules. */
#pragma once

namespace mtranslate {

enum class ExitCode {
    Done = 0,      /* the translation is written */
    BadSource = 1, /* the source, or a file that it calls, has an error or a gap */
    Trouble = 2,   /* wrong usage, or a file that cannot be read or written */
};

}  // namespace mtranslate
