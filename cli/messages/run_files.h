/* The files of a run, by the names that its result has for them. */
#pragma once

#include <mtranslate_program.h>

#include <cstddef>
#include <map>
#include <string>
#include <string_view>

#include "cli/files/source.h"

namespace mtranslate {

class RunFiles {
public:
    /* Both live as long as this. */
    RunFiles(const mTranslateProgramResult &result, const Source &source);

    /* All names are those of the result, null for a command. The file as the run has found it, and
     * as the user knows it: the source may be a copy. */
    std::string path(const char *name) const;
    std::string shown_name(const char *name) const;
    /* Whether it is the run's own source. */
    bool is_own(const char *name) const { return !name || path(name) == source_.argument; }
    std::string_view text(const char *name) const;
    /* Columns in characters, of the place's begin and end; a byte order mark is none. */
    std::size_t column(const mTranslateProgramRange &place) const;
    std::size_t end_column(const mTranslateProgramRange &place) const;

private:
    const mTranslateProgramFile *find(const char *name) const;
    std::size_t without_mark(const char *name, std::size_t line, std::size_t column) const;

    const Source &source_;
    std::map<std::string_view, const mTranslateProgramFile *> files_;
};

}  // namespace mtranslate
