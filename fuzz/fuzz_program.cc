/* Whole runs over programs of up to nine files that call each other, on a host that answers oddly
 * and leaves from any of its questions, with options of every kind. The first bytes of the input
 * choose; a byte 255 begins the next file. The next run is as in a fresh process. */
#include <unistd.h>

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <string>
#include <string_view>
#include <vector>

#include "host/stand_in_host.h"

using namespace mtranslate;

namespace {

constexpr std::size_t CHOICES = 6;

/* The folder of the files of an input. */
struct Folder {
    const std::string path = "/dev/shm/fuzz_program." + std::to_string(getpid());
    Folder() { std::filesystem::create_directories(path + "/private"); }
    ~Folder() { std::filesystem::remove_all(path); }
};

/* main calls a to h, the last of which is private. */
void write_files(const std::string &path, std::string_view sources) {
    static const char *const names[] = {"main", "a", "b", "c", "d", "e", "f", "g", "private/h"};
    for (const char *name : names) {
        const std::size_t end = sources.find('\xff');
        std::ofstream(path + "/" + name + ".m") << sources.substr(0, end);
        if (end == sources.npos) return;
        sources.remove_prefix(end + 1);
    }
}

std::vector<HostValue> options_of(ValueStore &values, const unsigned char *choice,
                                  const std::string &path) {
    static const char *const languages[] = {"classic", "matlab", "octave", "other"};
    const auto equation = [&](const char *name, HostValue value) {
        return values.equation(values.name(name), value);
    };
    std::vector<HostValue> options = {
        equation("Language", values.string(languages[choice[0] % 4]))};
    if ((choice[1] & 1) != 0) options.push_back(values.list_of_strings({path, "/nowhere"}));
    if ((choice[1] & 2) != 0) options.push_back(equation("KeepGoing", values.boolean(true)));
    if ((choice[1] & 4) != 0) options.push_back(equation("Display", values.boolean(true)));
    if ((choice[1] & 8) != 0) options.push_back(equation("AddTranslator", values.boolean(false)));
    if ((choice[1] & 16) != 0) options.push_back(equation("MaxMemory", values.string("2")));
    if ((choice[1] & 32) != 0) options.push_back(values.equation(0, values.boolean(true)));
    if ((choice[1] & 64) != 0) {
        const HostValue odd[] = {0, ValueStore::integer(7), values.string(path)};
        options.push_back(values.list(odd));
    }
    return options;
}

HostValue odd_answer(ValueStore &values, unsigned char choice) {
    switch (choice % 6) {
        case 0: return ValueStore::integer(choice);
        case 1: return values.boolean(false);
        case 2: return values.name("a");
        case 3: return values.list_of_strings({"a", "b"});
        case 4: return values.equation(0, 0);
        default: return 0;
    }
}

/* Some functions get a text made of their arguments; the question that is counted leaves. */
void answer_oddly(StandInHost &host, unsigned char choice, int leaves_at) {
    static int questions;
    questions = 0;
    const auto count = [leaves_at] {
        if (++questions == leaves_at) throw HostError("left");
    };
    host.translate_other_names([=](std::string_view name) -> std::optional<std::string> {
        count();
        if ((choice & 1) == 0 || name.size() % 3 != 0) return std::nullopt;
        return "ArrayTools:-" + std::string(name);
    });
    host.translate_other_functions(
        [=](std::string_view name,
            const std::vector<std::string> &arguments) -> std::optional<std::string> {
            count();
            if ((choice & 2) == 0 || name.size() % 3 != 1) return std::nullopt;
            return arguments.empty() ? "" : "g(\n" + arguments.front() + arguments.back();
        });
}

void run_program(StandInHost &host, const unsigned char *choice, std::string_view sources) {
    static const ErrorExit exits[] = {ErrorExit::Throw, ErrorExit::Return, ErrorExit::Jump};
    const Folder folder;
    const std::string &path = folder.path;
    write_files(path, sources);
    answer_oddly(host, choice[2], choice[3]);
    host.answer_otherwise(odd_answer(host.values(), choice[4]));
    host.leave_errors_by(exits[choice[5] % 3]);
    try {
        host.translate("file", path + "/main.m", options_of(host.values(), choice, path));
    } catch (const HostError &) {
    }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const unsigned char *data, std::size_t size) {
    if (size < CHOICES) return 0;
    StandInHost host;
    run_program(host, data, {reinterpret_cast<const char *>(data) + CHOICES, size - CHOICES});
    StandInHost next;
    if (next.translate("command", "x=1") != "x := 1;\n") std::abort();
    return 0;
}
