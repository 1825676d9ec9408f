/* Parts of a path as std::filesystem::path tells them, which costs a thousand times as much: it
 * takes a path apart into all of its names whenever one is made. */
#pragma once

#include <string>

namespace mtranslate {

/* Of a path that ends with a name. */
inline std::string folder_of(const std::string &path) {
    const std::size_t slash = path.rfind('/');
    if (slash == path.npos) return "";
    const std::size_t last = path.find_last_not_of('/', slash);
    return path.substr(0, last == path.npos ? 1 : last + 1);
}

inline std::string file_name_of(const std::string &path) {
    return path.substr(path.rfind('/') + 1);
}

/* folder: empty for that of a relative path itself. */
inline std::string in_folder(const std::string &folder, const std::string &name) {
    return folder.empty() || folder.ends_with('/') ? folder + name : folder + '/' + name;
}

/* A point that a name begins with begins no extension. */
inline std::string without_extension(const std::string &path) {
    const std::size_t name = path.rfind('/') + 1;
    const std::size_t point = path.rfind('.');
    const bool has_extension = point != path.npos && point > name && path.substr(name) != "..";
    return has_extension ? path.substr(0, point) : path;
}

inline std::string stem_of(const std::string &path) {
    return file_name_of(without_extension(path));
}

}  // namespace mtranslate
