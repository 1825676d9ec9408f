/* The line that tells people at a terminal how far a batch is. */
#pragma once

#include <chrono>
#include <cstddef>
#include <string>

namespace mtranslate {

/* Written to standard error where that is a terminal; else nothing is. */
class Progress {
public:
    explicit Progress(std::size_t files);
    /* Another file is done: that of the path, with errors or without. */
    void add(const std::string &path, bool has_error);
    void show();
    /* Takes the line away, in front of anything else that is written. */
    void clear();

private:
    const bool is_terminal_;
    const std::size_t files_;
    const std::chrono::steady_clock::time_point begin_ = std::chrono::steady_clock::now();
    std::size_t done_ = 0;
    std::size_t with_errors_ = 0;
    double megabytes_ = 0;
    bool is_shown_ = false;
};

}  // namespace mtranslate
