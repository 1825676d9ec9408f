/* Reading forms. */
#include "cli/config/form_text.h"

namespace mtranslate {

std::optional<FunctionForm> read_form(ConfigurationText &file, const FormEntry &entry,
                                      const std::vector<std::string> &names, bool has_own_ends) {
    auto text = entry.value.value_exact<std::string>();
    if (!text) file.report(entry.value, "expected a form of the call, a string");
    if (text && text->ends_with('\n')) text->pop_back();
    if (!text || text->empty()) return std::nullopt;
    try {
        const Template form(*text, names);
        if (!has_own_ends && text->ends_with(';'))
            throw TemplateError("a statement's last semicolon is written by the translator",
                                text->size() - 1);
        return FunctionForm{{entry.name, entry.title, *text, file.place_of(entry.key)}, form};
    } catch (const TemplateError &error) {
        file.report_in(entry.value, error.offset, error.what());
        return std::nullopt;
    }
}

void check_arguments(ConfigurationText &file, const FormEntry &entry, const FunctionForm &form,
                     std::size_t count, const std::string &what) {
    const std::size_t least = form.form.least();
    if (least <= count) return;
    const std::size_t place = form.rule.text.find('{' + std::to_string(least));
    file.report_in(entry.value, place == std::string::npos ? 0 : place,
                   "there is no argument " + std::to_string(least) + " in " + what);
}

}  // namespace mtranslate
