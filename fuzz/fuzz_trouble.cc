/* Whole runs whose allocations and system calls fail as the input plans it: once, from then on, or
 * now and then. The first bytes of the input choose; a byte 255 begins the next file. A run gives
 * what it gives without failures, or an error; it leaves no block and no open file, and the next
 * run is as in a fresh process. */
#include <dirent.h>
#include <fcntl.h>
#include <mtranslate_program.h>
#include <sys/stat.h>

#include <cerrno>
#include <cstdint>
#include <filesystem>
#include <fstream>
#include <new>
#include <optional>

#include "emit/switch_writer.h"
#include "fuzz/input.h"
#include "host/stand_in_host.h"

namespace {

/* What fails of one kind of calls. */
struct Plan {
    unsigned first = 0; /* up to the first that fails; 0 for none */
    unsigned every = 0; /* each so many after that fails too; 0 for none */
    bool has_failed = false;

    bool fails() {
        if (first == 0 || --first > 0) return false;
        first = every;
        return has_failed = true;
    }
};

Plan Heap, System;
int Reason;           /* errno of what fails */
bool ReadsLittle;     /* a read that would fail is a short one instead */
long Blocks;          /* given out and not taken back */
thread_local int Own; /* above 0 while the fuzzer's own calls are made */

bool system_fails() {
    if (Own > 0 || !System.fails()) return false;
    errno = Reason;
    return true;
}

}  // namespace

// NOLINTBEGIN(bugprone-reserved-identifier): the linker's names
extern "C" {
void *__real_malloc(size_t size);
void *__real_calloc(size_t count, size_t size);
void *__real_realloc(void *block, size_t size);
void __real_free(void *block);
int __real_open(const char *path, int flags, ...);
ssize_t __real_read(int file, void *buffer, size_t size);
int __real_stat(const char *path, struct stat *status);
int __real_fstat(int file, struct stat *status);
DIR *__real_opendir(const char *path);
dirent *__real_readdir(DIR *folder);

void *__wrap_malloc(size_t size) {
    if (Own == 0 && Heap.fails()) return nullptr;
    void *block = __real_malloc(size);
    if (block) ++Blocks;
    return block;
}
void *__wrap_calloc(size_t count, size_t size) {
    if (Own == 0 && Heap.fails()) return nullptr;
    void *block = __real_calloc(count, size);
    if (block) ++Blocks;
    return block;
}
void *__wrap_realloc(void *block, size_t size) {
    if (Own == 0 && Heap.fails()) return nullptr;
    void *resized = __real_realloc(block, size);
    if (!block && resized) ++Blocks;
    return resized;
}
void __wrap_free(void *block) {
    if (block) --Blocks;
    __real_free(block);
}
int __wrap_open(const char *path, int flags, ...) {
    return system_fails() ? -1 : __real_open(path, flags, 0666);
}
ssize_t __wrap_read(int file, void *buffer, size_t size) {
    if (!system_fails()) return __real_read(file, buffer, size);
    return ReadsLittle && size > 0 ? __real_read(file, buffer, 1) : -1;
}
int __wrap_stat(const char *path, struct stat *status) {
    return system_fails() ? -1 : __real_stat(path, status);
}
int __wrap_fstat(int file, struct stat *status) {
    return system_fails() ? -1 : __real_fstat(file, status);
}
DIR *__wrap_opendir(const char *path) { return system_fails() ? nullptr : __real_opendir(path); }
dirent *__wrap_readdir(DIR *folder) { return system_fails() ? nullptr : __real_readdir(folder); }
}

void *operator new(size_t size) {
    if (void *block = __wrap_malloc(size)) return block;
    throw std::bad_alloc();
}
void *operator new(size_t size, const std::nothrow_t &) noexcept { return __wrap_malloc(size); }
void operator delete(void *block) noexcept { __wrap_free(block); }
void operator delete(void *block, size_t) noexcept { __wrap_free(block); }
// NOLINTEND(bugprone-reserved-identifier)

using namespace mtranslate;

namespace {

constexpr std::size_t CHOICES = 12;

/* What is done meanwhile does not fail. */
struct OwnCalls {
    OwnCalls() { ++Own; }
    ~OwnCalls() { --Own; }
    OwnCalls(const OwnCalls &) = delete;
    OwnCalls &operator=(const OwnCalls &) = delete;
};

/* The folder of the files of an input. */
struct Folder {
    const std::string path = "/dev/shm/fuzz_trouble." + std::to_string(getpid());
    Folder() { std::filesystem::create_directories(path + "/private"); }
    ~Folder() { std::filesystem::remove_all(path); }
};

void write_files(const std::string &path, std::string_view text) {
    static const char *const names[] = {"main", "a", "b", "c", "private/d"};
    std::size_t at = 0;
    for (const std::string &part : parts_of(text, std::size(names)))
        std::ofstream(path + '/' + names[at++] + ".m", std::ios::binary) << part;
}

/* No text where an error was raised or the status is not good. */
using Outcome = std::optional<std::string>;

struct Run {
    const char *language;
    bool is_tool;
    unsigned flags;
    ErrorExit exit;
    std::string main;
    Plan heap, system;
};

Outcome run_tool(const Run &run) {
    mTranslateProgramRequest request{};
    request.size = sizeof request;
    request.file = run.main.c_str();
    request.language = run.language;
    request.flags = run.flags;
    Heap = run.heap;
    System = run.system;
    const mTranslateProgramResult *result = mTranslateProgram(&request);
    const OwnCalls own;
    Outcome outcome;
    if (result->status == MTRANSLATE_PROGRAM_DONE) outcome = result->text;
    mTranslateProgramRelease(result);
    return outcome;
}

/* The library's own table, with the host's work left out of the failures. */
struct Host : StandInHost {
    HostValue args;
    explicit Host(const Run &run) {
        leave_errors_by(run.exit);
        const HostValue list[] = {
            values().string("file"), values().string(run.main),
            values().equation(values().name("Language"), values().string(run.language))};
        args = values().sequence(list);
    }
};

Outcome run_host(const Run &run) {
    ++Own;
    Outcome outcome;
    {
        Host host(run);
        host.on_error([](const std::string &) { Heap.first = System.first = 0; });
        Heap = run.heap;
        System = run.system;
        --Own;
        try {
            const char *text = text_of(host.run(host.args));
            ++Own;
            if (text && host.take_errors().empty()) outcome = text;
        } catch (const HostError &) {
            ++Own;
        } catch (const std::bad_alloc &) {
            ++Own;  // of the host
        }
        host.take_errors();
    }
    --Own;
    return outcome;
}

Outcome outcome_of(const Run &run) {
    SwitchCounter = 0;
    Heap.has_failed = System.has_failed = false;
    Outcome outcome = run.is_tool ? run_tool(run) : run_host(run);
    Heap.first = System.first = 0;
    mTranslateRelease();
    return outcome;
}

Plan plan_of(Choices &choices) {
    Plan plan;
    plan.first = choices.below(4000);
    plan.every = choices.next() % 4;
    return plan;
}

long open_files() {
    return std::distance(std::filesystem::directory_iterator("/proc/self/fd"), {});
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const unsigned char *data, std::size_t size) {
    if (size < CHOICES) return 0;
    static const char *const languages[] = {"classic", "matlab", "octave"};
    static const ErrorExit exits[] = {ErrorExit::Throw, ErrorExit::Return, ErrorExit::Jump};
    static const int reasons[] = {EIO, EMFILE, ENOMEM, EACCES};
    const Folder folder;
    write_files(folder.path, {reinterpret_cast<const char *>(data) + CHOICES, size - CHOICES});
    Choices choices(data, CHOICES);
    Run run{languages[choices.next() % 3],
            choices.flag(),
            0,
            exits[choices.next() % 3],
            folder.path + "/main.m",
            {},
            {}};
    run.flags = choices.below(MTRANSLATE_COUNTS_ON) & ~MTRANSLATE_WITHOUT_DISK;
    const Outcome expected = outcome_of(run);
    const unsigned which = choices.next();
    Reason = reasons[which / 4 % 4];
    ReadsLittle = which >= 128;
    if (which % 4 != 1) run.heap = plan_of(choices);
    if (which % 4 != 2) run.system = plan_of(choices);
    run.system.first %= 64;
    const long files = open_files();
    std::optional<long> blocks;
    for (int i = 0; i < 2; i++) {  // what libraries keep for ever they have after the first
        const long before = Blocks;
        const Outcome outcome = outcome_of(run);
        check(!outcome || outcome == expected, "another translation",
              expected.value_or("none") + "\n---- and not\n" + outcome.value_or(""));
        check(outcome.has_value() == expected.has_value() || Heap.has_failed || System.has_failed,
              "an error of nothing");
        blocks = Blocks - before - static_cast<long>(outcome.has_value() && outcome->size() > 15);
    }
    check(*blocks <= 0, "blocks are left", std::to_string(*blocks));
    check(open_files() == files, "files are left open");
    check(outcome_of({"classic", false, 0, ErrorExit::Throw, folder.path + "/main.m", {}, {}}) ==
              outcome_of({"classic", true, 0, ErrorExit::Throw, folder.path + "/main.m", {}, {}}),
          "the next run differs");
    return 0;
}
