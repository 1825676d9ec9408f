/* The files of a batch, packed: there may be millions. */
#pragma once

#include <cstddef>
#include <map>
#include <string>
#include <vector>

namespace mtranslate {

struct InputFile {
    std::string path;      /* as messages show it: below the path that the user gave */
    std::string relative;  /* to the folder that the user gave; of a file, its name alone */
    std::string trouble{}; /* why it cannot be read, as far as that is known; else empty */
};

/* Holds of each file its name and eight bytes, and what is in front of the name once for all
 * neighbours. */
class InputFiles {
public:
    class Iterator {
    public:
        Iterator(const InputFiles &files, std::size_t at) : files_(&files), at_(at) {}
        InputFile operator*() const { return (*files_)[at_]; }
        Iterator &operator++() {
            ++at_;
            return *this;
        }
        bool operator!=(const Iterator &other) const { return at_ != other.at_; }

    private:
        const InputFiles *files_;
        std::size_t at_;
    };

    void add(const InputFile &file);
    InputFile operator[](std::size_t i) const;
    std::size_t size() const { return ends_.size(); }
    bool empty() const { return ends_.empty(); }
    Iterator begin() const { return {*this, 0}; }
    Iterator end() const { return {*this, size()}; }

private:
    struct Folder {
        std::size_t first; /* of its files, which end where the next folder begins */
        std::string path;
        std::string relative;
    };

    void enter(const std::string &path, const std::string &relative);

    std::string names_;
    std::vector<std::size_t> ends_; /* in names_, by files */
    std::vector<Folder> folders_;
    std::map<std::size_t, InputFile> whole_; /* with trouble, or of other names in the end */
};

}  // namespace mtranslate
