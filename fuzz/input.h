/* What the fuzzers make of their inputs. */
#pragma once

#include <sys/mman.h>
#include <unistd.h>

#include <cstddef>
#include <cstdio>
#include <cstdlib>
#include <string>
#include <string_view>
#include <vector>

namespace mtranslate {

/* Ends the fuzzer with what is wrong, and where it is seen, unless the condition holds. */
inline void check(bool condition, const std::string &what, const std::string &where = "") {
    if (condition) return;
    std::fprintf(stderr, "%s: %s\n", what.c_str(), where.c_str());
    std::abort();
}

/* The name of a file in memory that holds the text, until the next one is asked for. */
inline std::string file_of(std::string_view text) {
    static const int file = memfd_create("source", 0);
    check(ftruncate(file, 0) == 0 && pwrite(file, text.data(), text.size(), 0) >= 0, "no file");
    return "/proc/self/fd/" + std::to_string(file);
}

/* The first bytes of an input decide, one after the other and then from the first one on; what
 * stands after them is the text. */
class Choices {
public:
    Choices(const unsigned char *data, std::size_t count) : data_(data), count_(count) {}
    /* The next byte. */
    unsigned next() { return data_[at_++ % count_]; }
    bool flag() { return next() % 2 == 1; }
    /* A number below most, by two bytes. */
    unsigned below(unsigned most) {
        const unsigned high = next() << 8;
        return (high | next()) % most;
    }

private:
    const unsigned char *data_;
    std::size_t count_;
    std::size_t at_ = 0;
};

/* The parts of a text between bytes 255; at least one, at most so many, the last with the rest. */
inline std::vector<std::string> parts_of(std::string_view text, std::size_t most) {
    std::vector<std::string> parts;
    while (parts.size() + 1 < most && text.find('\xff') != text.npos) {
        parts.emplace_back(text.substr(0, text.find('\xff')));
        text.remove_prefix(text.find('\xff') + 1);
    }
    parts.emplace_back(text);
    return parts;
}

}  // namespace mtranslate
