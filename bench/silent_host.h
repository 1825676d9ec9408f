/* The cheapest host there is, so that a benchmark measures the library: it answers nothing, makes
 * no strings and gives arguments from a fixed vector. */
#pragma once

#include <mtranslate.h>

#include <string>

namespace bench {

class SilentHost {
public:
    /* language: of the sources; null for the library's default. */
    explicit SilentHost(const char *language = nullptr) : language_(language) {}
    /* Translates source, a text (mode "command") or a file's name (mode "file"). Answers the length
     * of the translation; throws std::runtime_error when an error is raised. */
    size_t translate(const std::string &mode, const std::string &source);

private:
    const char *language_;
};

}  // namespace bench
