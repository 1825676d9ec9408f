/* Running diff. */
#include "cli/files/difference.h"

#include <spawn.h>
#include <sys/mman.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <filesystem>
#include <vector>

#include "cli/files/files.h"

extern char **environ;

namespace mtranslate {

namespace {

Descriptor file_in_memory(std::string_view text) {
    Descriptor file(memfd_create("translation", 0));
    if (!file) fail("cannot compare");
    write_all(file.get(), text, "a copy of the translation");
    return file;
}

/* Runs diff with standard output into the descriptor; its exit code. */
int run_diff(std::vector<std::string> words, int output) {
    std::vector<char *> arguments(words.size() + 1);  // and a null
    std::transform(words.begin(), words.end(), arguments.begin(),
                   [](std::string &word) { return word.data(); });
    posix_spawn_file_actions_t actions;
    posix_spawn_file_actions_init(&actions);
    posix_spawn_file_actions_adddup2(&actions, output, STDOUT_FILENO);
    pid_t process = 0;
    errno = posix_spawnp(&process, "diff", &actions, nullptr, arguments.data(), environ);
    posix_spawn_file_actions_destroy(&actions);
    if (errno != 0) fail("cannot run diff");
    int status = 0;
    while (waitpid(process, &status, 0) < 0)
        if (errno != EINTR) fail("cannot wait for diff");
    return WIFEXITED(status) ? WEXITSTATUS(status) : 2;
}

constexpr const char *NO_FILE = "/dev/null";

}  // namespace

bool is_of_new_file(std::string_view difference) {
    return difference.starts_with(std::string("--- ") + NO_FILE + '\n');
}

std::string difference(const std::string &path, std::string_view text) {
    const auto old = read_file_if_there(path);
    if (old == text) return "";
    const Descriptor next = file_in_memory(text);
    const Descriptor result = file_in_memory("");
    const int code = run_diff({"diff", "-u", "--label", old ? path : NO_FILE, "--label", path,
                               old ? path : NO_FILE, "/proc/self/fd/" + std::to_string(next.get())},
                              result.get());
    if (code > 1) throw FileError("diff cannot compare '" + path + "' with its translation");
    return text_of(result, "the differences of '" + path + "'");
}

}  // namespace mtranslate
