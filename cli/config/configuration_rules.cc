/* From TOML to rules. */
#include "cli/config/configuration_rules.h"

#include <algorithm>
#include <cctype>
#include <string>
#include <string_view>
#include <vector>

#include "cli/config/construct_reader.h"
#include "cli/config/function_reader.h"
#include "cli/rules/rules_text.h"

namespace mtranslate {

namespace {

/* Its form belongs to the constructs, whichever table has it. */
constexpr std::string_view TRY = "try";

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
    if (name == TRY) return rules.set_form(name, read_try_function(file, key, value));
    rules.set_function(name, read_function_rule(file, name, key, value));
}

void read_form(ConfigurationText &file, const toml::key &key, const toml::node &value,
               Rules &rules) {
    const std::string name(key.str());
    if (const Construct *construct = find_construct(name))
        return rules.set_form(name, read_construct_rule(file, *construct, key, value));
    std::vector<std::string> names;
    for (const Construct &construct : all_constructs()) names.emplace_back(construct.name);
    file.report_unknown(key, names);
}

}  // namespace mtranslate
