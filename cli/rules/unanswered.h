/* Calls of a function that no rule has answered, counted by what rules can tell apart. */
#pragma once

#include <cstddef>
#include <map>
#include <string>
#include <vector>

namespace mtranslate {

/* How often each number of arguments occurs. */
using CountsByArguments = std::map<std::size_t, std::size_t>;

struct UnansweredCalls {
    CountsByArguments by_arguments;              /* of all calls */
    std::map<int, CountsByArguments> by_results; /* of those for two results or more */
    std::map<std::string, std::size_t>
        by_literals; /* of others, by the patterns of their options */
    std::size_t handles = 0;

    /* A call, asked for a number of results (RequestedResults). */
    void add(const std::vector<std::string> &arguments, int results);
    void add(const UnansweredCalls &more);
};

}  // namespace mtranslate
