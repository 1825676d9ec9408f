/* What the tool says, in all its forms, of texts and names with any bytes: JSON is valid, a line is
 * a line, and nothing steers a terminal. What is written as JSON is a baseline that knows it all.
 * The first bytes of the input choose; a byte 255 begins the next text. */
#include <filesystem>
#include <fstream>
#include <nlohmann/json.hpp>
#include <sstream>

#include "cli/files/files.h"
#include "cli/messages/baseline.h"
#include "cli/messages/excerpt.h"
#include "cli/messages/explain.h"
#include "cli/messages/ignore_comments.h"
#include "cli/messages/message_writer.h"
#include "fuzz/input.h"

using namespace mtranslate;

namespace {

constexpr std::size_t CHOICES = 24;
constexpr std::size_t TEXTS_OF_ONE = 5;

/* Of texts: its file, what it says, an operand, the file that calls, the line of the source. */
Diagnostic diagnostic_of(Choices &choices, const std::string *texts) {
    const auto rows = message_rows();
    Diagnostic one;
    const unsigned row = choices.next();
    if (row % 4 != 0) one.code = rows[row % rows.size()]->code;
    one.severity = static_cast<MessageSeverity>(choices.next() % 4);
    one.file = texts[0];
    one.text = texts[1];
    one.operands = {texts[2], choices.flag() ? std::string(MTRANSLATE_FOUND_IN_CLASSES) : ""};
    one.line = choices.next() % 3;
    one.column = one.line > 0 ? choices.next() % 200 : 0;
    one.end_column = one.column + choices.next();
    one.calling_file = texts[3];
    one.calling_line = choices.next() % 2;
    const std::size_t begin = std::min<std::size_t>(choices.next(), texts[4].size());
    if (one.column > 0) one.excerpt = excerpt(texts[4], begin, begin + choices.next());
    return one;
}

Diagnostics diagnostics_of(Choices &choices, std::string_view text) {
    std::vector<std::string> texts = parts_of(text, 3 * TEXTS_OF_ONE);
    Diagnostics all;
    for (std::size_t at = 0; at < texts.size(); at += TEXTS_OF_ONE) {
        texts.resize(std::max(texts.size(), at + TEXTS_OF_ONE));
        all.push_back(diagnostic_of(choices, &texts[at]));
    }
    return all;
}

std::string written(MessageFormat format, const Diagnostics &all, TextStyle style = {}) {
    std::ostringstream to;
    const auto writer = make_message_writer(format, to, style);
    writer->write(all);
    writer->finish();
    return to.str();
}

std::vector<std::string> lines_of(const std::string &text) {
    check(text.empty() || text.ends_with('\n'), "no whole lines", text);
    std::vector<std::string> lines;
    std::istringstream from(text);
    for (std::string line; std::getline(from, line);) lines.push_back(line);
    return lines;
}

void check_json(const Diagnostics &all) {
    const auto lines = lines_of(written(MessageFormat::Json, all));
    check(lines.size() == all.size(), "not a line for each message");
    for (const std::string &line : lines) {
        const auto json = nlohmann::json::parse(line, nullptr, false);
        check(json.is_object() && json.contains("message"), "no object", line);
    }
}

/* It holds all kinds of messages, and takes long. */
void check_log(const Diagnostics &all) {
    const auto log = nlohmann::json::parse(written(MessageFormat::Sarif, all), nullptr, false);
    check(log.is_object(), "no log");
    std::size_t told = log["runs"][0]["results"].size();
    for (const auto &invocation : log["runs"][0].value("invocations", nlohmann::json::array()))
        told += invocation["toolExecutionNotifications"].size();
    check(told == all.size(), "not each message in the log");
}

void check_lines(const Diagnostics &all) {
    const auto commands = lines_of(written(MessageFormat::Github, all));
    check(commands.size() == all.size(), "not a command for each message");
    for (const std::string &line : commands)
        check(line.starts_with("::") && printable(line) == line, "no command", line);
    for (std::string line : lines_of(written(MessageFormat::Text, all))) {
        std::erase(line, '\t');
        check(printable(line) == line, "a line that steers a terminal", line);
    }
    written(MessageFormat::Text, all, {true, true});
}

/* The folder of the files of all inputs. */
struct Folder {
    const std::string path = "/dev/shm/fuzz_messages." + std::to_string(getpid());
    Folder() { std::filesystem::create_directories(path); }
    ~Folder() { std::filesystem::remove_all(path); }
};

void check_baseline(Diagnostics all, std::string_view text) {
    static const Folder folder;
    const std::string file = folder.path + "/known";
    std::ofstream(file, std::ios::binary) << written(MessageFormat::Json, all);
    const std::size_t count = all.size();
    check(Baseline(file).leave_out(all) == count, "a message that is known is given");
    std::ofstream(file, std::ios::binary) << text;
    try {
        Baseline any(file);
    } catch (const FileError &error) {
        check(std::string(error.what()).find(file) != std::string::npos, "no file", error.what());
    }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const unsigned char *data, std::size_t size) {
    if (size < CHOICES) return 0;
    Choices choices(data, CHOICES);
    const std::string_view text(reinterpret_cast<const char *>(data) + CHOICES, size - CHOICES);
    const Diagnostics all = diagnostics_of(choices, text);
    check_json(all);
    if (choices.next() % 16 == 0) check_log(all);
    check_lines(all);
    check_baseline(all, text);
    const std::string word(text.substr(0, text.find('\xff')));
    check(!no_explanation(word).empty(), "nothing to say", word);
    if (has_ignore_comments(text))
        is_ignored(*message_rows()[choices.next() % message_rows().size()], word, text);
    return 0;
}
