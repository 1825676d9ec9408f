/* soak SECONDS SEED FOLDER...
 *
 * Runs in a random sequence, good ones, failing ones and ones that the host leaves, in every
 * language and by both entries, over the files of the folders, whole and damaged. What each of them
 * says is what it says in a fresh process. */
#include <mtranslate_program.h>
#include <sys/wait.h>

#include <chrono>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <random>

#include "emit/switch_writer.h"
#include "fuzz/input.h"
#include "host/stand_in_host.h"

using namespace mtranslate;

namespace {

constexpr int SEQUENCE = 50;
constexpr std::size_t LARGEST = 20000; /* bytes of a source */
constexpr unsigned TOOL_FLAGS = MTRANSLATE_DETAILS | MTRANSLATE_TREE | MTRANSLATE_VALUES;

struct Run {
    std::string text;
    unsigned language; /* classic, matlab, octave */
    bool is_file, is_tool, keeps_going, displays;
    unsigned exit;    /* of errors */
    unsigned left_at; /* the question that leaves; 0 for none */
};

const char *const LANGUAGES[] = {"classic", "matlab", "octave"};

/* Each question is counted; some are answered. */
void answer_questions(StandInHost &host, const Run &run, unsigned &questions) {
    const auto count = [&run, &questions] {
        if (++questions == run.left_at) throw HostError("left");
    };
    host.translate_other_names([=](std::string_view name) -> std::optional<std::string> {
        count();
        if (name.size() % 5 != 0) return std::nullopt;
        return "n_" + std::string(name);
    });
    host.translate_other_functions(
        [=](std::string_view name, const auto &arguments) -> std::optional<std::string> {
            count();
            if (name.size() % 5 != 1) return std::nullopt;
            return "g(" + std::to_string(arguments.size()) + ")";
        });
}

std::string said_by_host(const Run &run) {
    static const ErrorExit exits[] = {ErrorExit::Throw, ErrorExit::Return, ErrorExit::Jump};
    static StandInHost host;
    static unsigned questions;
    questions = 0;
    host.values().clear();
    ValueStore &values = host.values();
    const auto set = [&](const char *name, HostValue value) {
        return values.equation(values.name(name), value);
    };
    const HostValue list[] = {values.string(run.is_file ? "file" : "command"),
                              values.string(run.is_file ? file_of(run.text) : run.text),
                              set("Language", values.string(LANGUAGES[run.language])),
                              set("KeepGoing", values.boolean(run.keeps_going)),
                              set("Display", values.boolean(run.displays))};
    answer_questions(host, run, questions);
    host.leave_errors_by(exits[run.exit]);
    std::string said;
    try {
        const char *text = text_of(host.run(values.sequence(list)));
        said = text ? text : "nothing";
    } catch (const HostError &error) {
        said = error.what();
    }
    for (const std::string &error : host.take_errors()) said += "\n---- " + error;
    return said;
}

std::string said_to_tool(const Run &run) {
    mTranslateProgramRequest request{};
    request.size = sizeof request;
    request.command = run.text.c_str();
    request.language = LANGUAGES[run.language];
    request.flags = TOOL_FLAGS;
    const mTranslateProgramResult *result = mTranslateProgram(&request);
    std::string said = std::to_string(result->status) + ' ' + result->text;
    for (size_t i = 0; i < result->message_count; i++)
        said += std::string("\n---- ") + result->messages[i]->text;
    for (const char *tree : {result->tree, result->values}) said += tree ? tree : "";
    mTranslateProgramRelease(result);
    return said;
}

std::string said_by(const Run &run) {
    SwitchCounter = 0;  // classic counts on
    return run.is_tool ? said_to_tool(run) : said_by_host(run);
}

/* The child's part of a process with the work; the parent's end, which waits for it. */
template <typename Work>
void in_process(Work work) {
    const pid_t process = fork();
    check(process >= 0, "no process");
    if (process == 0) {
        work();
        _exit(0);
    }
    int status = 0;
    waitpid(process, &status, 0);
    check(status == 0, "a process has failed");
}

/* The same in a fresh process: this one runs nothing itself. */
std::string said_by_fresh(const Run &run) {
    const std::string file = "/dev/shm/soak." + std::to_string(getpid());
    in_process([&] { std::ofstream(file, std::ios::binary) << said_by(run); });
    std::ifstream from(file, std::ios::binary);
    std::string said{std::istreambuf_iterator<char>(from), std::istreambuf_iterator<char>()};
    std::filesystem::remove(file);
    return said;
}

/* As many in one process, which is a host that lives long. */
void check_sequence(const std::vector<Run> &runs) {
    std::vector<std::string> expected;
    expected.reserve(runs.size());
    for (const Run &run : runs) expected.push_back(said_by_fresh(run));
    in_process([&] {
        for (std::size_t i = 0; i < runs.size(); ++i) {
            const std::string said = said_by(runs[i]);
            check(said == expected[i], "another outcome",
                  runs[i].text + "\n==== " + expected[i] + "\n==== and not\n" + said);
        }
        mTranslateRelease();
    });
}

using Random = std::mt19937;

unsigned below(Random &random, std::size_t most) { return static_cast<unsigned>(random() % most); }

std::string damaged(Random &random, std::string text) {
    for (unsigned i = below(random, 4); i > 0 && !text.empty(); --i) {
        const std::size_t at = below(random, text.size());
        switch (below(random, 3)) {
            case 0: text[at] = "()[]{}'\"%;,\n=.@"[below(random, 15)]; break;
            case 1: text.erase(at, 1 + below(random, 20)); break;
            default: text.insert(at, text.substr(below(random, text.size()), 20));
        }
    }
    return text;
}

std::vector<std::string> texts_of(char **folders) {
    std::vector<std::string> texts;
    for (; *folders; ++folders)
        for (const auto &entry : std::filesystem::recursive_directory_iterator(*folders)) {
            if (!entry.is_regular_file() || entry.file_size() > LARGEST) continue;
            std::ifstream file(entry.path(), std::ios::binary);
            texts.emplace_back(std::istreambuf_iterator<char>(file),
                               std::istreambuf_iterator<char>());
        }
    check(!texts.empty(), "no sources");
    return texts;
}

Run random_run(Random &random, const std::vector<std::string> &texts) {
    Run run{};
    run.text = damaged(random, texts[below(random, texts.size())]);
    run.language = below(random, 3);
    run.is_file = below(random, 2) == 0;
    run.is_tool = below(random, 3) == 0;
    run.keeps_going = below(random, 2) == 0;
    run.displays = below(random, 4) == 0;
    run.exit = below(random, 3);
    run.left_at = below(random, 3) == 0 ? 1 + below(random, 30) : 0;
    return run;
}

/* How many runs there were. */
long soak(std::chrono::seconds time, Random random, char **folders) {
    const std::vector<std::string> texts = texts_of(folders);
    const auto end = std::chrono::steady_clock::now() + time;
    long count = 0;
    for (; std::chrono::steady_clock::now() < end; count += SEQUENCE) {
        std::vector<Run> runs;
        runs.reserve(SEQUENCE);
        for (int i = 0; i < SEQUENCE; ++i) runs.push_back(random_run(random, texts));
        check_sequence(runs);
    }
    return count;
}

}  // namespace

int main(int count, char **arguments) {
    if (count < 4) return 2;
    try {
        file_of("");  // of one name in all processes
        const Random random(static_cast<unsigned>(std::strtoul(arguments[2], nullptr, 10)));
        const std::chrono::seconds time(std::strtol(arguments[1], nullptr, 10));
        std::printf("%ld runs\n", soak(time, random, arguments + 3));
    } catch (const std::exception &error) {
        std::fprintf(stderr, "%s\n", error.what());
        return 1;
    }
    return 0;
}
