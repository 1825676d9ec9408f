/* Names in one text. */
#include "cli/files/input_files.h"

#include <algorithm>

namespace mtranslate {

void InputFiles::add(const InputFile &file) {
    const std::size_t begin = file.path.rfind('/') + 1;
    const std::string name = file.path.substr(begin);
    if (file.trouble.empty() && file.relative.ends_with(name)) {
        enter(file.path.substr(0, begin),
              file.relative.substr(0, file.relative.size() - name.size()));
        names_ += name;
    } else {
        whole_[size()] = file;
    }
    ends_.push_back(names_.size());
}

void InputFiles::enter(const std::string &path, const std::string &relative) {
    const bool is_last =
        !folders_.empty() && folders_.back().path == path && folders_.back().relative == relative;
    if (!is_last) folders_.push_back({size(), path, relative});
}

InputFile InputFiles::operator[](std::size_t i) const {
    if (const auto whole = whole_.find(i); whole != whole_.end()) return whole->second;
    const std::size_t begin = i == 0 ? 0 : ends_[i - 1];
    const std::string name = names_.substr(begin, ends_[i] - begin);
    const auto next = std::upper_bound(
        folders_.begin(), folders_.end(), i,
        [](std::size_t file, const Folder &folder) { return file < folder.first; });
    const Folder &folder = *std::prev(next);
    return {folder.path + name, folder.relative + name};
}

}  // namespace mtranslate
