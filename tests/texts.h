/* Texts of files, and long ones. */
#pragma once

#include <string>

namespace mtranslate {

std::string read_file(const std::string &path);
std::string repeated(const std::string &text, int count);

}  // namespace mtranslate
