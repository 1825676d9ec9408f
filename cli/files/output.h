/* Where a translation goes, and where it must not go. */
#pragma once

#include <functional>
#include <optional>
#include <string>
#include <string_view>

#include "cli/files/files.h"

namespace mtranslate {

enum class Durability {
    OnDisk, /* what is written survives the machine */
    Whole   /* it survives this process */
};

/* Takes a text piece by piece. */
using Sink = std::function<void(std::string_view piece)>;
/* Gives a text to the sink, the same one each time it is called. */
using Pieces = std::function<void(const Sink &to)>;

/* Why no output may have this ending; empty where it may. */
std::string refusal_of_suffix(const std::string &suffix);

class Output {
public:
    /* path names a file, or a descriptor as /dev/stdout does; none, or "-", is standard output. */
    explicit Output(const std::optional<std::string> &path);

    /* Throws FileError where the output is one of the sources, whatever it is called, or any
     * existing file *.m. */
    void refuse_sources(const FilesRead &sources) const;

    /* Writes text, all of it or nothing: a file is replaced when its successor is whole and on the
     * disk, and keeps its owner and mode; a link stays and what it leads to is replaced. Pipes and
     * devices are written directly. Throws FileError, also for an existing file *.m. */
    void write(std::string_view text, Durability durability = Durability::OnDisk) const;
    /* Likewise a text that is never there as a whole. What it throws while it is made leaves a file
     * as it was. */
    void write(const Pieces &text, Durability durability = Durability::OnDisk) const;

private:
    int descriptor_;   /* -1: a file, of path_ */
    std::string path_; /* as given */
    std::string name_; /* what messages call it */
};

}  // namespace mtranslate
