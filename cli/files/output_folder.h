/* The folder for the outputs of many sources. */
#pragma once

#include <sys/stat.h>

#include <string>

namespace mtranslate {

class OutputFolder {
public:
    /* limit: the folder that outputs stay in, behind all links; empty: wherever they lead. */
    OutputFolder(std::string path, std::string limit);

    /* Makes it where it is not there. Throws FileError where nothing can be written into it. */
    void make();
    /* Throws FileError where the output leads out of the limit, or is no file that can be replaced:
     * to open a pipe might take for ever. */
    void check(const std::string &output) const;
    /* Makes the folders in it that hold the output. Throws FileError, also where this one is not
     * the one that has been made: what has been written so far is lost then. */
    void make_around(const std::string &output) const;

private:
    bool holds(const std::string &output, bool is_link, int &reason) const;

    std::string path_;
    std::string limit_;
    mutable std::string known_; /* the folder of the last output, which is in the limit */
    struct stat made_ {};
};

}  // namespace mtranslate
