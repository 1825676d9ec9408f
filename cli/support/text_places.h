/* Places in a text: bytes against lines and columns, each in logarithmic time. */
#pragma once

#include <cstddef>
#include <string_view>
#include <vector>

namespace mtranslate {

/* Both from 1; columns count characters. */
struct TextPlace {
    std::size_t line;
    std::size_t column;
};

class TextPlaces {
public:
    /* The text must outlive this object. */
    explicit TextPlaces(std::string_view text);

    /* The byte of a place; that of the text's end where the text ends before. */
    std::size_t offset_of(TextPlace place) const;
    TextPlace place_of(std::size_t offset) const;
    /* The line that holds the byte: its first byte. */
    std::size_t begin_of_line(std::size_t offset) const;

private:
    struct Mark {
        std::size_t offset;
        std::size_t character; /* how many begin in front of it */
    };

    std::size_t character_of(std::size_t offset) const;

    std::string_view text_;
    std::vector<Mark> lines_; /* their begins */
    std::vector<Mark> marks_; /* begins of characters, some hundred bytes apart */
};

}  // namespace mtranslate
