/* How the tool ends, for shells and build rules. */
#pragma once

namespace mtranslate {

enum class ExitCode {
    Done = 0,      /* the translation is written */
    BadSource = 1, /* the source, or a file that it calls, has an error or a gap */
    Usage = 2,     /* the options, or a configuration, make no sense */
    Trouble = 3,   /* a file cannot be read or written, or a process is lost */
};

}  // namespace mtranslate
