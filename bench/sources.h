/* Sources to measure with, grown to a size. */
#pragma once

#include <cstddef>
#include <string>

namespace bench {

/* Functions as people write them: comments, loops, conditions, calls, indices, small literals and
 * strings, in at least size bytes. Their names end in numbers from number on. */
std::string realistic_source(size_t size, int number = 1);
/* The same for a script. */
std::string realistic_script(size_t size, int number);
/* One matrix literal of rows by columns numbers. */
std::string wide_matrix(int rows, int columns);
/* One statement in depth nested ifs. */
std::string nested_blocks(int depth);
/* One comment of length characters. */
std::string long_comment(size_t length);
/* A sum of count names. */
std::string long_sum(int count);
/* A command of count bare words. */
std::string long_command(int count);

}  // namespace bench
