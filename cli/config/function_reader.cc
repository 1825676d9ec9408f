/* Reading the entries of a function. */
#include "cli/config/function_reader.h"

#include <algorithm>
#include <charconv>
#include <optional>
#include <string_view>

#include "cli/config/form_text.h"
#include "cli/rules/result_kinds.h"

namespace mtranslate {

namespace {

constexpr std::size_t MOST_ARGUMENTS = 1000;

/* The number that a key stands for. */
std::optional<std::size_t> number_of(std::string_view key) {
    std::size_t count = 0;
    const auto [end, error] = std::from_chars(key.data(), key.data() + key.size(), count);
    const bool is_whole = error == std::errc() && end == key.data() + key.size();
    return is_whole && count <= MOST_ARGUMENTS ? std::optional(count) : std::nullopt;
}

bool is_pattern(std::string_view key) {
    return key.starts_with('-') || key.find_first_of("{}'\",[") != key.npos;
}

/* A key as a file has it. */
std::string written_key(const toml::key &key) {
    std::string text(key.str());
    const bool is_bare = text.find_first_of(".'\"{}[], -") == text.npos;
    if (is_bare) return text;
    return text.find('"') == text.npos ? '"' + text + '"' : '\'' + text + '\'';
}

class FunctionReader {
public:
    FunctionReader(ConfigurationText &file, const std::string &name) : file_(file), name_(name) {}

    FunctionRule read(const toml::key &key, const toml::node &value) {
        const std::string title = "functions." + written_key(key);
        if (const toml::table *entries = value.as_table())
            for (const auto &[entry, form] : *entries) read_entry(title, entry, form);
        else
            read_forms(rule_.plain, title, key, value);
        return rule_;
    }

private:
    /* An entry of the function's own table. */
    void read_entry(const std::string &title, const toml::key &key, const toml::node &value) {
        const std::string entry = title + '.' + written_key(key);
        if (key == "results")
            read_results(entry, value);
        else if (key == "handle")
            read_handle(entry, key, value);
        else if (key == "kind")
            read_kind(entry, key, value);
        else if (!read_form_of(rule_.plain, entry, key, value))
            refuse(key,
                   "a number of arguments, a pattern of them (\"{1}, 'x'\"), default, "
                   "results, handle or kind (a function of a package is written in quotes: "
                   "\"package.function\")");
    }

    /* A form by the arguments; false where the key stands for none. */
    bool read_form_of(CallForms &forms, const std::string &title, const toml::key &key,
                      const toml::node &value) {
        const FormEntry entry{name_, title, key, value};
        if (const auto count = number_of(key.str())) {
            read_counted(forms, entry, *count);
        } else if (key == "default") {
            forms.otherwise = read_form(file_, entry);
            forms.is_default = true;
        } else if (is_pattern(key.str())) {
            read_pattern(forms, entry);
        } else {
            return false;
        }
        return true;
    }

    void read_counted(CallForms &forms, const FormEntry &entry, std::size_t count) {
        const auto form = read_form(file_, entry);
        if (!form) return;
        check_arguments(file_, entry, *form, count, "a call with " + std::to_string(count));
        forms.by_count.insert_or_assign(count, *form);
    }

    void read_pattern(CallForms &forms, const FormEntry &entry) {
        try {
            const ArgumentPattern pattern{std::string(entry.key.str())};
            const auto form = read_form(file_, entry);
            if (!form) return;
            check_arguments(file_, entry, *form, pattern.places(), "the pattern");
            const auto goes_first = [&pattern](const PatternForm &other) {
                return other.pattern.literals() < pattern.literals() ||
                       (other.pattern.literals() == pattern.literals() &&
                        other.pattern.has_list() && !pattern.has_list());
            };
            const auto at = std::find_if(forms.patterns.begin(), forms.patterns.end(), goes_first);
            forms.patterns.insert(at, {pattern, *form});
        } catch (const TemplateError &error) {
            file_.report(entry.key, error.what());
        }
    }

    /* A form, or a table of forms by the arguments. */
    void read_forms(CallForms &forms, const std::string &title, const toml::key &key,
                    const toml::node &value) {
        const toml::table *entries = value.as_table();
        if (!entries) {
            forms.otherwise = read_form(file_, {name_, title, key, value});
            return;
        }
        for (const auto &[entry, form] : *entries)
            if (!read_form_of(forms, title + '.' + written_key(entry), entry, form))
                refuse(entry, "a number of arguments, a pattern of them (\"{1}, 'x'\") or default");
    }

    void read_results(const std::string &title, const toml::node &value) {
        const toml::table *entries = value.as_table();
        if (!entries)
            return file_.report(value, "expected a table of forms by the number of results");
        for (const auto &[key, forms] : *entries) {
            const auto results = number_of(key.str());
            if (!results && key != "default")
                refuse(key, "a number of results or default");
            else
                read_forms(rule_.by_results[results ? static_cast<int>(*results) : ANY_RESULTS],
                           title + '.' + written_key(key), key, forms);
        }
    }

    void read_handle(const std::string &title, const toml::key &key, const toml::node &value) {
        const auto form = read_form(file_, {name_, title, key, value});
        if (form && (!form->form.is_plain() || form->form.is_statements()))
            return file_.report_in(value, 0, "a handle is a value without arguments");
        rule_.handle = form;
    }

    void read_kind(const std::string &title, const toml::key &key, const toml::node &value) {
        const auto kind = value.value_exact<std::string>();
        if (!kind || !result_kind_of(*kind))
            return file_.report(value, "expected " + all_result_kinds());
        rule_.kind = Rule{name_, title, *kind, file_.place_of(key)};
    }

    void refuse(const toml::key &key, const std::string &expected) {
        file_.report(key, "unknown key '" + std::string(key.str()) + "'; expected " + expected);
    }

    ConfigurationText &file_;
    const std::string &name_;
    FunctionRule rule_;
};

}  // namespace

FunctionRule read_function_rule(ConfigurationText &file, const std::string &name,
                                const toml::key &key, const toml::node &value) {
    return FunctionReader(file, name).read(key, value);
}

}  // namespace mtranslate
