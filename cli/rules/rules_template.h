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
    /* Reads a template: "{1}" is an argument, "{2..}" that and all after it, "{args}" all of them,
     * "{count}" their number, "{results}" how many results the call is to give, "{{" and "}}" are
     * braces. With names these are the only places: "{name}" is the argument that has this number
     * among them. Throws TemplateError. */
    explicit Template(const std::string &text, const std::vector<std::string> &names = {});

    /* The text of a call with these arguments, least() of them or more. An argument is put in
     * parentheses where its own operators would come apart, and so is the whole, unless it is
     * statements. A list without elements takes a comma beside it along. results: the text for
     * {results}. */
    std::string fill(const std::vector<std::string> &arguments, const std::string &results) const;
    /* The same without the pair around the whole, for a call that is a statement. */
    std::string fill_statement(const std::vector<std::string> &arguments,
                               const std::string &results) const;
    /* The same for arguments that stand for lines of statements: all texts stay as they are. An
     * empty one takes the line along on which it stands alone. */
    std::string fill_lines(const std::vector<std::string> &arguments) const;

    /* The highest number of an argument: so many there must be. */
    std::size_t least() const { return least_; }
    /* Whether there is a list of arguments, which may be any number. */
    bool has_list() const { return has_list_; }
    /* Whether it says how many results there are. */
    bool has_results() const { return has_results_; }
    /* Whether it is statements, which are no value. */
    bool is_statements() const { return is_statements_; }
    /* Whether there is no place in it. */
    bool is_plain() const;
    /* At which bytes the argument of a number is used. */
    std::vector<std::size_t> uses_of(std::size_t number) const;
    /* The name that the form calls with all arguments as they are, as in "f({args})"; else empty.
     */
    std::string name_called() const;

private:
    enum class Kind { Text, Argument, List, Count, Results };
    struct Piece {
        Kind kind;
        std::string text;        /* of the kind Text */
        std::size_t number = 0;  /* of the argument; of the first in a list */
        std::size_t offset = 0;  /* in the template */
        std::size_t at = 0;      /* in the text with one byte for each place */
        bool is_operand = false; /* something binds it from beside */
    };

    std::size_t read_place(const std::string &text, std::size_t at,
                           const std::vector<std::string> &names);
    bool append_numbered(const std::string &word);
    bool append_named(const std::string &word, const std::vector<std::string> &names);
    void append_text(const std::string &text);
    void append_place(Kind kind, std::size_t number);
    static bool is_bound(std::string_view before, std::string_view after);
    bool is_alone_on_line(std::size_t piece, const std::string &before) const;

    std::vector<Piece> pieces_;
    std::size_t least_ = 0;
    bool has_list_ = false;
    bool has_results_ = false;
    bool is_statements_ = false;
};

}  // namespace mtranslate
