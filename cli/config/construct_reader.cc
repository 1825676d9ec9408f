/* Reading the forms of constructs. */
#include "cli/config/construct_reader.h"

#include <optional>
#include <string>
#include <vector>

#include "cli/config/form_text.h"

namespace mtranslate {

namespace {

/* A block has one place: with two, texts would double at each depth, and with none it would get
 * lost. */
void check_blocks(ConfigurationText &file, const FormEntry &entry, const FunctionForm &form,
                  const std::vector<std::string> &places, std::size_t blocks) {
    for (std::size_t number = 1; number <= blocks; ++number) {
        const std::vector<std::size_t> uses = form.form.uses_of(number);
        const std::string place = '{' + places[number - 1] + '}';
        if (uses.empty())
            file.report_in(entry.value, 0, "the form has no place for " + place);
        else if (uses.size() > 1)
            file.report_in(entry.value, uses[1], place + " stands for lines, which have one place");
    }
}

/* The form for calls with all arguments, or, without the last one, with fewer. */
void read_form_of(ConfigurationText &file, const FormEntry &entry, const Construct &construct,
                  std::size_t arguments, FunctionRule &rule) {
    const auto end = construct.places.begin() + static_cast<long>(arguments);
    const std::vector<std::string> places(construct.places.begin(), end);
    const auto form = read_form(file, entry, places, construct.blocks > 0);
    if (!form) return;
    check_blocks(file, entry, *form, places, construct.blocks);
    rule.plain.by_count.insert_or_assign(arguments, *form);
}

/* A try with an identifier after catch, and one without. */
void read_variants(ConfigurationText &file, const std::string &title, const Construct &construct,
                   const toml::table &entries, FunctionRule &rule) {
    const std::string name(construct.name);
    for (const auto &[key, value] : entries) {
        const std::string entry_title = title + '.' + std::string(key.str());
        const FormEntry entry{name, entry_title, key, value};
        if (key == "named")
            read_form_of(file, entry, construct, construct.places.size(), rule);
        else if (key == "unnamed")
            read_form_of(file, entry, construct, construct.places.size() - 1, rule);
        else
            file.report_unknown(key, {"named", "unnamed"});
    }
}

}  // namespace

FunctionRule read_construct_rule(ConfigurationText &file, const Construct &construct,
                                 const toml::key &key, const toml::node &value) {
    FunctionRule rule;
    const std::string name(construct.name);
    const std::string title = "forms." + name;
    const toml::table *variants = construct.blocks > 0 ? value.as_table() : nullptr;
    if (variants)
        read_variants(file, title, construct, *variants, rule);
    else
        read_form_of(file, {name, title, key, value}, construct, construct.places.size(), rule);
    return rule;
}

FunctionRule read_try_function(ConfigurationText &file, const toml::key &key,
                               const toml::node &value) {
    const std::string name = "try";
    const std::string title = "functions.try";
    const FormEntry entry{name, title, key, value};
    const Construct numbered{name, name, {"1", "2", "3"}, 2};
    FunctionRule rule;
    read_form_of(file, entry, numbered, numbered.places.size(), rule);
    return rule;
}

}  // namespace mtranslate
