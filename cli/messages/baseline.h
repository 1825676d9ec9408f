/* Messages that are known already, so that only new ones are given. */
#pragma once

#include <cstddef>
#include <map>
#include <string>

#include "cli/messages/diagnostic.h"

namespace mtranslate {

class Baseline {
public:
    /* Knows no messages. */
    Baseline() = default;
    /* Those of a file in JSON Lines, as --format json writes them. Throws FileError. */
    explicit Baseline(const std::string &path);

    /* Takes out of the diagnostics what is known, each as often as it was known; answers how many
     * there were. A message is known by file, code and text: lines in front of it may come and
     * go. */
    std::size_t leave_out(Diagnostics &diagnostics);

private:
    std::map<std::string, std::size_t> known_;
};

}  // namespace mtranslate
