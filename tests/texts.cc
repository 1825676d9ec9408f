// Texts of files, and long ones.
#include "tests/texts.h"

#include <fstream>
#include <sstream>

namespace mtranslate {

std::string read_file(const std::string &path) {
    std::ostringstream text;
    text << std::ifstream(path, std::ios::binary).rdbuf();
    return text.str();
}

std::string repeated(const std::string &text, int count) {
    std::string all;
    while (count-- > 0) all += text;
    return all;
}

}  // namespace mtranslate
