/* The text of a configuration, and what is wrong with it. */
#pragma once

#include <cstddef>
#include <map>
#include <string>
#include <string_view>
#include <utility>

#include "cli/config/toml.h"
#include "cli/rules/call_forms.h"
#include "cli/support/text_places.h"

namespace mtranslate {

class ConfigurationText {
public:
    /* name: what messages call the file. */
    ConfigurationText(std::string name, std::string text)
        : name_(std::move(name)), text_(std::move(text)), places_(text_) {}
    ConfigurationText(const ConfigurationText &) = delete;
    ConfigurationText &operator=(const ConfigurationText &) = delete;

    const std::string &text() const { return text_; }
    RulePlace place_of(const toml::key &key) const;

    /* Notes a mistake, at a place, a key or a value. */
    void report(const toml::source_position &place, const std::string &message);
    void report(const toml::key &key, const std::string &message);
    void report(const toml::node &value, const std::string &message);
    /* Likewise at a byte of a string's value. */
    void report_in(const toml::node &string, std::size_t byte, const std::string &message);
    /* A key that is none of the known ones. */
    void report_unknown(const toml::key &key, const std::vector<std::string> &known);
    /* Throws ConfigurationError with the mistakes in the order of their places, if there are any:
     * the first 100, and how many more there are. */
    void throw_mistakes() const;

private:
    std::size_t offset_of(const toml::source_position &place) const {
        return places_.offset_of({place.line, place.column});
    }
    std::string_view line_from(std::size_t begin) const;
    RulePlace place_of(std::size_t offset) const;
    void report(std::size_t offset, const std::string &message);
    std::string text_of_mistake(std::size_t offset, const std::string &message) const;

    std::string name_;
    std::string text_;
    TextPlaces places_;
    std::multimap<std::size_t, std::string> mistakes_; /* messages, by their bytes */
};

}  // namespace mtranslate
