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
    RunFiles(const RunFiles &) = delete;
    RunFiles &operator=(const RunFiles &) = delete;

    /* All names are those of the result, null for a command. The file as the run has found it, and
     * as the user knows it: the source may be a copy. */
    const std::string &path(const char *name) const { return find(name).path; }
    const std::string &shown_name(const char *name) const;
    /* Whether it is the run's own source. */
    bool is_own(const char *name) const { return find(name).is_own; }
    std::string_view text(const char *name) const { return find(name).text; }
    /* Columns in characters, of the place's begin and end; a byte order mark is none. */
    std::size_t column(const mTranslateProgramRange &place) const;
    std::size_t end_column(const mTranslateProgramRange &place) const;

private:
    struct File {
        std::string path;
        std::string_view text;
        bool is_own;
        bool has_mark;
    };

    const File &find(const char *name) const;
    std::size_t without_mark(const char *name, std::size_t line, std::size_t column) const;

    const std::string &own_name_;
    File command_;
    mutable std::map<std::string_view, File> files_;
    mutable const char *last_name_ = nullptr; /* it mostly comes again */
    mutable const File *last_ = nullptr;
};

}  // namespace mtranslate
