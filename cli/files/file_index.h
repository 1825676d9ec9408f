/* Which file of a batch a name means. In a batch every file is translated for itself: a call needs
 * no look-up, but the statements of a called script belong in the place of the call, and a name
 * that a file of the batch defines is not unknown. */
#pragma once

#include <map>
#include <string>
#include <vector>

#include "cli/files/inputs.h"

namespace mtranslate {

struct IndexedFile {
    std::string path;
    std::string folder; /* that may call it, where that is one alone (private); else empty */
};

class FileIndex {
public:
    explicit FileIndex(const std::vector<InputFile> &inputs);
    /* The file that the name means when the file caller calls it, or null; no method, which only
     * the class of an argument makes a name mean. Functions of packages have their package in the
     * name: package.name. */
    const IndexedFile *find(const std::string &caller, const std::string &name) const;
    /* The file of a class's method, or of its constructor. Classes of packages have their package
     * in the name. class_name null: of the first class that has the method, but as a constructor.
     */
    const IndexedFile *find_method(const char *class_name, const std::string &method) const;

private:
    std::map<std::string, std::vector<IndexedFile>> files_; /* by name; methods are none of them */
    std::map<std::string, std::map<std::string, IndexedFile>> methods_; /* by name and class */
};

}  // namespace mtranslate
