/* Patterns of arguments: "{1}, 'descend'" is a call with two arguments, the second of which is that
 * text. */
#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <vector>

namespace mtranslate {

class ArgumentPattern {
public:
    /* Reads a list of places and literals with commas between them: {1}, {2}, ... in this order,
     * {2..} once for any number of arguments; texts, numbers, true, false and [] as MATLAB has
     * them. Throws TemplateError. */
    explicit ArgumentPattern(const std::string &text);

    /* What stands in the places, if the arguments, host texts, have the literals. */
    std::optional<std::vector<std::string>> match(const std::vector<std::string> &arguments) const;

    /* How many arguments the places take: at least, with a list. */
    std::size_t places() const { return places_; }
    bool has_list() const { return list_.has_value(); }
    std::size_t literals() const { return items_.size() - places_; }

private:
    using Item = std::optional<std::string>; /* the host text of a literal; none: a place */

    void add_place(const std::string &word, std::size_t offset);

    std::vector<Item> items_;
    std::size_t places_ = 0;
    std::optional<std::size_t> list_; /* stands in front of the item of this number */
};

/* The host text of a literal, as MATLAB has it; none where it is none of those above. */
std::optional<std::string> host_text_of_literal(const std::string &literal);
/* The other way round: the literal of a host text. Texts that are no words of letters, digits and
 * underscores, and numbers, count as none. */
std::optional<std::string> option_literal(const std::string &host_text);

}  // namespace mtranslate
