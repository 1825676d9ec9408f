/* From TOML to rules. */
#include "cli/configuration_rules.h"

#include <algorithm>
#include <cctype>
#include <charconv>
#include <optional>
#include <string>
#include <string_view>

#include "cli/rules_text.h"

namespace mtranslate {

namespace {

constexpr std::size_t MOST_ARGUMENTS = 1000;
constexpr std::size_t ARGUMENTS_OF_TRY = 3;

bool is_word(std::string_view text) {
    const auto is_part = [](char c) {
        return std::isalnum(static_cast<unsigned char>(c)) || c == '_';
    };
    return !text.empty() && !std::isdigit(static_cast<unsigned char>(text[0])) &&
           std::all_of(text.begin(), text.end(), is_part);
}

/* A name of MATLAB, in the packages that it belongs to. */
bool is_function_name(std::string_view text) {
    const std::size_t dot = text.find('.');
    return is_word(text.substr(0, dot)) &&
           (dot == text.npos || is_function_name(text.substr(dot + 1)));
}

/* The number of arguments that a key stands for. */
std::optional<std::size_t> count_of(std::string_view key) {
    std::size_t count = 0;
    const auto [end, error] = std::from_chars(key.data(), key.data() + key.size(), count);
    const bool is_whole = error == std::errc() && end == key.data() + key.size();
    return is_whole && count <= MOST_ARGUMENTS ? std::optional(count) : std::nullopt;
}

/* The forms of one function under reading. */
class FunctionReader {
public:
    FunctionReader(ConfigurationText &file, std::string name)
        : file_(file), name_(std::move(name)) {}

    FunctionRule read(const toml::key &key, const toml::node &value) {
        const bool is_member = name_.find('.') != name_.npos;
        const std::string title = "functions." + (is_member ? '"' + name_ + '"' : name_);
        if (const toml::table *forms = value.as_table()) {
            for (const auto &[count, form] : *forms)
                read_entry(title + '.' + std::string(count.str()), count, form);
        } else if (name_ == TRY_KEYWORD) {
            read_form_for(ARGUMENTS_OF_TRY, title, key, value);
        } else {
            rule_.otherwise = form_of(title, key, value);
        }
        return rule_;
    }

private:
    void read_entry(const std::string &title, const toml::key &key, const toml::node &value) {
        if (const auto count = count_of(key.str())) {
            read_form_for(*count, title, key, value);
        } else if (key == "default") {
            rule_.otherwise = form_of(title, key, value);
            rule_.is_default = true;
        } else {
            file_.report(key, "unknown key '" + std::string(key.str()) +
                                  "'; expected a number of arguments or default (a function of a "
                                  "package is written in quotes: \"package.function\")");
        }
    }

    void read_form_for(std::size_t count, const std::string &title, const toml::key &key,
                       const toml::node &value) {
        const auto form = form_of(title, key, value);
        if (!form) return;
        const std::size_t least = form->form.least();
        if (least <= count) {
            rule_.by_count.insert_or_assign(count, *form);
            return;
        }
        const std::size_t place = form->rule.text.find('{' + std::to_string(least));
        file_.report_in(value, place == std::string::npos ? 0 : place,
                        "there is no argument " + std::to_string(least) + " in a call with " +
                            std::to_string(count));
    }

    /* None for an empty text, and for a wrong one. */
    std::optional<FunctionForm> form_of(const std::string &title, const toml::key &key,
                                        const toml::node &value) {
        auto text = value.value_exact<std::string>();
        if (!text) file_.report(value, "expected a form of the call, a string");
        if (text && text->ends_with('\n')) text->pop_back();
        if (!text || text->empty()) return std::nullopt;
        try {
            const Template form(*text);
            if (name_ != TRY_KEYWORD && text->ends_with(';'))
                throw TemplateError("a statement's last semicolon is written by the translator",
                                    text->size() - 1);
            return FunctionForm{{name_, title, *text, file_.place_of(key)}, form};
        } catch (const TemplateError &error) {
            file_.report_in(value, error.offset, error.what());
            return std::nullopt;
        }
    }

    ConfigurationText &file_;
    std::string name_;
    FunctionRule rule_;
};

}  // namespace

void read_name(ConfigurationText &file, const toml::key &key, const toml::node &value,
               Rules &rules) {
    const std::string name(key.str());
    const auto text = value.value_exact<std::string>();
    if (!is_word(name)) return file.report(key, "'" + name + "' is no name of MATLAB");
    if (!text) return file.report(value, "expected a name of the host's, a string");
    if (!text->empty() && !is_host_name(*text))
        return file.report_in(value, 0,
                              "this is no name; what a function without arguments stands for is "
                              "a form of [functions]");
    rules.set_name(name, {name, "names." + name, *text, file.place_of(key)});
}

void read_function(ConfigurationText &file, const toml::key &key, const toml::node &value,
                   Rules &rules) {
    const std::string name(key.str());
    if (!is_function_name(name)) return file.report(key, "'" + name + "' is no name of MATLAB");
    rules.set_function(name, FunctionReader(file, name).read(key, value));
}

}  // namespace mtranslate
