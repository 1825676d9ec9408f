/* Templates: host texts with places for the arguments of a call. */
#pragma once

#include <cstddef>
#include <stdexcept>
#include <string>
#include <string_view>
#include <vector>

namespace mtranslate {

/* What is wrong with a template, and at which of its bytes. */
class TemplateError : public std::runtime_error {
public:
    TemplateError(const std::string &message, std::size_t offset)
        : std::runtime_error(message), offset(offset) {}
    std::size_t offset;
};

class Template {
public:
    /* Reads a template: "{1}" is an argument, "{2..}" that and all behind it, "{args}" all of them,
     * "{count}" their number, "{{" and "}}" are braces. Throws TemplateError. */
    explicit Template(const std::string &text);

    /* The text of a call with these arguments, least() of them or more. An argument is put in
     * parentheses where its own operators would come apart, and so is the whole, unless it is
     * statements. A list without elements takes a comma beside it along. */
    std::string fill(const std::vector<std::string> &arguments) const;
    /* The same for arguments that are lines of statements: all texts stay as they are. What stands
     * alone on a line is indented like it, and takes the line along where it is empty. */
    std::string fill_lines(const std::vector<std::string> &arguments) const;

    /* The highest number of an argument: so many there must be. */
    std::size_t least() const { return least_; }
    /* Whether there is a list of arguments, which may be any number. */
    bool has_list() const { return has_list_; }

private:
    enum class Kind { Text, Argument, List, Count };
    struct Piece {
        Kind kind;
        std::string text;        /* of the kind Text */
        std::size_t number = 0;  /* of the argument; of the first in a list */
        std::size_t at = 0;      /* in the text with one byte for each place */
        bool is_operand = false; /* something binds it from beside */
    };

    std::size_t read_place(const std::string &text, std::size_t at);
    void append_text(const std::string &text);
    void append_place(Kind kind, std::size_t number);
    static bool is_bound(std::string_view before, std::string_view behind);
    bool is_alone_on_line(std::size_t piece, const std::string &before) const;

    std::vector<Piece> pieces_;
    std::size_t least_ = 0;
    bool has_list_ = false;
    bool is_statements_ = false;
};

}  // namespace mtranslate
