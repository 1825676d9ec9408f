#include "cli/run/progress.h"

#include <unistd.h>

#include <filesystem>
#include <iomanip>
#include <iostream>
#include <sstream>

namespace mtranslate {

Progress::Progress(std::size_t files) : is_terminal_(isatty(STDERR_FILENO) == 1), files_(files) {}

void Progress::add(const std::string &path, bool has_error) {
    ++done_;
    if (has_error) ++with_errors_;
    if (!is_terminal_) return;
    std::error_code error;
    const auto bytes = std::filesystem::file_size(path, error);
    if (!error) megabytes_ += static_cast<double>(bytes) / 1e6;
}

void Progress::show() {
    if (!is_terminal_) return;
    const std::chrono::duration<double> time = std::chrono::steady_clock::now() - begin_;
    std::ostringstream line;
    line << '[' << done_ << '/' << files_ << "] " << std::fixed << std::setprecision(1)
         << megabytes_ / time.count() << " MB/s, " << with_errors_ << " with errors";
    std::cerr << line.str() << std::flush;
    is_shown_ = true;
}

void Progress::clear() {
    if (is_shown_) std::cerr << "\r\x1b[K";
    is_shown_ = false;
}

}  // namespace mtranslate
