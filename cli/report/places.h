/* Bytes of a source as lines and columns. */
#pragma once

#include <cstddef>
#include <cstdint>

#include "cli/messages/messages.h"
#include "cli/support/library.h"

namespace mtranslate {

/* From 1; columns in characters, a byte order mark is none. */
struct Place {
    std::size_t line = 0;
    std::size_t column = 0;
};

/* Places of a source, asked for in its order: others on the same line are counted anew. */
class Places {
public:
    explicit Places(::Source &source) : source_(source) {}

    Place at(std::uint32_t offset);

private:
    ::Source &source_;
    ColumnCounter columns_;
};

}  // namespace mtranslate
