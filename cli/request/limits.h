/* What the translation of one file may cost. */
#pragma once

#include <chrono>
#include <cstddef>

namespace mtranslate {

struct Limits {
    std::chrono::milliseconds time{0}; /* 0: any */
    std::size_t megabytes = 0;         /* of memory; 0: any */

    bool are_none() const { return time.count() == 0 && megabytes == 0; }
};

}  // namespace mtranslate
