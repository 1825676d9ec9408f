/* Reports in files, in the form that their endings name. */
#include <algorithm>

#include "cli/report/report.h"

namespace mtranslate {

namespace {

/* How reports are written, by the endings of their files. */
struct Form {
    const char *ending;
    void (*write)(const Report &report, const Sink &to);
    bool shows_translations;
};
constexpr Form FORMS[] = {
    {".json", write_json, false}, {".md", write_markdown, false}, {".html", write_page, true}};

const Form *form_of(const std::string &path) {
    const auto *form = std::ranges::find_if(
        FORMS, [&](const Form &candidate) { return path.ends_with(candidate.ending); });
    return form == std::end(FORMS) ? nullptr : form;
}

}  // namespace

void write_report(const Report &report, const std::string &path) {
    Output(path).write([&](const Sink &to) { form_of(path)->write(report, to); });
}

bool is_report_path(const std::string &path) { return form_of(path) != nullptr; }

bool shows_translations(const std::string &path) {
    const Form *form = form_of(path);
    return form && form->shows_translations;
}

}  // namespace mtranslate
