/* Programs of many pieces of one kind in matlab: what a run keeps grows as its source. */
#include <gtest/gtest.h>
#include <malloc.h>

#include "support/allocation.h"
#include "tests/matlab_run.h"

namespace mtranslate {

namespace {

/* Bytes of the blocks that the run has taken so far; the region, which does not lie among them, is
 * taken as full. */
std::size_t kept_bytes() {
    std::size_t bytes = 1 << 20;
    const HashVisit add = [](HashValue block, void *sum, void *) {
        *static_cast<std::size_t *>(sum) += malloc_usable_size(block);
        return 1;
    };
    HashForEach(AllocationTable, &bytes, nullptr, add);
    return bytes;
}

std::size_t AtEnd;

/* What a run of so many pieces keeps, each with its number in the place of #. */
std::size_t kept_for(const std::string &piece, int count) {
    std::string source;
    for (int k = 1; k <= count; ++k)
        for (const char c : piece) source += c == '#' ? std::to_string(k) : std::string(1, c);
    RunOptions options;
    options.observers.program = [](void *, const SourceFile *) { AtEnd = kept_bytes(); };
    AtEnd = 0;
    run_matlab(source, options);
    return AtEnd;
}

TEST(Growth, of_what_is_kept_is_that_of_the_source) {
    const char *const pieces[] = {
        "x# = #;\n",
        "% #\n",
        "qxrp_# = #;\n",
        "function f, x = 1; end\n",
        "function f#(x), y = x + #; end\n",
        "function [a, b] = f#(x), if x, return, end, a = #; b = 2; end\n",
        "if f(x), y# = 1; elseif f(y), y = #; else, y = 2; end\n",
        "for k = 1:3, y(k) = #; end\n",
        "while f(x) && g(x), x = x - #; end\n",
        "switch f(x), case {#, 'a'}, y = 1; end\n",
        "try, y = f(#); catch e, y = g(e); end\n",
        "unwind_protect, y = f(#); unwind_protect_cleanup, y = 1; end\n",
        "y = {1, 'a', #};\n",
        "y = [1 f(2); 3 #];\n",
        "y = f(#)' * x.^2 - (1:#);\n",
        "x(:, #) = 1;\n",
        "x(#) = [];\n",
        "c{end+1} = #;\n",
        "s(end+1).a# = #;\n",
        "s.a.(f(#)).b(2) = #;\n",
        "[a, b#] = size(f(#));\n",
        "[c{1:2}] = f(#);\n",
        "y = f(c{:}, #);\n",
        "g# = @(t) t + y + #;\n",
        "y = cellfun(@(t) f(t), c);\n",
        "y = strcmp(z, 'a#');\n",
        "y = eval('1 + #');\n",
        "eval('x = #;');\n",
        "x# = eval(y);\n",
        "global x#\n",
        "clear x#\n",
        "hold on\n",
        "y = unknown_#(1);\n",
    };
    for (const char *piece : pieces) {
        SCOPED_TRACE(piece);
        const std::size_t once = kept_for(piece, 500);
        const std::size_t twice = kept_for(piece, 1000);
        EXPECT_GT(once, 0u);
        EXPECT_LT(twice, once * 5 / 2);
    }
}

}  // namespace

}  // namespace mtranslate
