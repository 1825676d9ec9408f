/* Constructs of the language that the host may have a form for. */
#pragma once

#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace mtranslate {

struct Construct {
    std::string_view name;           /* in the table [forms] */
    std::string_view asked;          /* what the host is asked for */
    std::vector<std::string> places; /* names of the arguments, in their order */
    std::size_t blocks = 0;          /* how many of them, the first ones, are blocks of lines */
};

/* All of them, in the order of their names. */
std::span<const Construct> all_constructs();
/* That of a name, or that which the host is asked for; null for none. */
const Construct *find_construct(std::string_view name);
const Construct *find_asked_construct(std::string_view asked);

}  // namespace mtranslate
