/* Configurations of the tool: a file mtranslate.toml and, after a byte 255, one of rules beside it.
 * The first byte of the input chooses whether the first file may have options. Either there are
 * rules, whose answers are well-formed and that find what is asked for, or mistakes at their
 * places. */
#include <mtranslate_program.h>
#include <unistd.h>

#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <string>
#include <string_view>

#include "cli/config/configuration.h"
#include "cli/messages/excerpt.h"
#include "cli/rules/rules_host.h"
#include "cli/rules/rules_text.h"

using namespace mtranslate;

namespace {

void check(bool condition, const char *what, const std::string &text) {
    if (condition) return;
    std::fprintf(stderr, "%s: %s\n", what, text.c_str());
    std::abort();
}

/* The folder of the files of all inputs. */
struct Folder {
    const std::string path = "/dev/shm/fuzz_configuration." + std::to_string(getpid());
    Folder() { std::filesystem::create_directories(path); }
    ~Folder() { std::filesystem::remove_all(path); }
};

void write_file(const std::string &path, std::string_view text) { std::ofstream(path) << text; }

/* Every line can be shown, and the first one tells the place. */
void check_mistakes(const std::string &mistakes, const std::string &folder) {
    check(mistakes.ends_with('\n'), "no whole lines", mistakes);
    const std::size_t place = mistakes.find(".toml:");
    check(mistakes.starts_with(folder) && place != mistakes.npos, "no place", mistakes);
    check(mistakes.find(": error: ", place) < mistakes.find('\n'), "no message", mistakes);
    for (std::size_t at = 0; at < mistakes.size();) {
        const std::size_t end = mistakes.find('\n', at);
        std::string line = mistakes.substr(at, end - at);
        std::erase(line, '\t');
        check(printable(line) == line, "a line that steers a terminal", mistakes);
        at = end + 1;
    }
}

void ask(RuleAnswers &answers, const std::string &name, std::int32_t kind, std::size_t count,
         std::int32_t results) {
    static const char *const arguments[] = {"a + b", "\"descend\"", "[1, 2]"};
    mTranslateProgramQuestion question{};
    question.size = sizeof question;
    question.kind = kind;
    question.name = name.c_str();
    question.arguments = count > 0 ? arguments : nullptr;
    question.argument_count = count;
    question.results = results;
    const auto answer = answers.answer(question);
    if (answer) check(find_lone_half(*answer) == answer->npos, "unmatched text", *answer);
}

/* All that may be asked for a name, with up to three arguments and results. */
void ask_for(RuleAnswers &answers, const std::string &name) {
    ask(answers, name, MTRANSLATE_QUESTION_NAME, 0, 1);
    ask(answers, name, MTRANSLATE_QUESTION_NAME, 0, HOST_HANDLE);
    for (std::size_t count = 0; count <= 3; ++count)
        for (std::int32_t results = HOST_RESULTS_VARY; results <= 3; ++results)
            ask(answers, name, MTRANSLATE_QUESTION_CALL, count, results);
    check(answers.kind(name.c_str()) <= MTRANSLATE_RESULT_SEVERAL, "no kind", name);
}

void ask_all(const Rules &rules) {
    RuleAnswers answers(rules, true);
    for (const Rule *rule : rules.of_names()) ask_for(answers, rule->name);
    for (const Rule *rule : rules.of_functions()) ask_for(answers, rule->name);
    for (const Rule *rule : rules.of_forms()) ask_for(answers, rule->name);
    answers.used();
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const unsigned char *data, std::size_t size) {
    if (size == 0) return 0;
    static const Folder folder;
    const std::string path = folder.path + "/mtranslate.toml";
    const std::string_view text(reinterpret_cast<const char *>(data) + 1, size - 1);
    const std::size_t end = text.find('\xff');
    write_file(path, text.substr(0, end));
    write_file(folder.path + "/r.toml", end == text.npos ? "" : text.substr(end + 1));
    try {
        const bool has_options = (data[0] & 1) != 0;
        const Configuration read = has_options ? read_configuration(path) : read_rules(path);
        check_reachable(read.rules);
        ask_all(read.rules);
    } catch (const ConfigurationError &error) {
        check_mistakes(error.what(), folder.path);
    }
    return 0;
}
