/* Source files that are absent, cannot be read, come in pieces or are more than can be open. */
#include <fcntl.h>
#include <gtest/gtest.h>
#include <signal.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <sys/time.h>
#include <unistd.h>

#include <cerrno>
#include <filesystem>
#include <thread>
#include <vector>

#include "tests/translation.h"

// NOLINTBEGIN(bugprone-reserved-identifier): the linker's names
extern "C" ssize_t __real_read(int file, void *buffer, size_t size);

static int failing_read = 0;           /* reads up to the one that fails; 0 for none */
static const char *cut_file = nullptr; /* or in front of which this file is cut to 8 bytes */

extern "C" ssize_t __wrap_read(int file, void *buffer, size_t size) {
    const bool is_next = failing_read > 0 && --failing_read == 0;
    if (is_next && cut_file) truncate(cut_file, 8);
    if (!is_next || cut_file) return __real_read(file, buffer, size);
    errno = EIO;
    return -1;
}
// NOLINTEND(bugprone-reserved-identifier)

namespace mtranslate {

namespace {

/* The error of a run, however it is left, or the translation where there is none. */
std::string outcome(const std::string &file, int failing = 0) {
    std::string first;
    for (const ErrorExit exit : EVERY_EXIT) {
        failing_read = failing;
        const Outcome run = run_leaving(exit, "file", file);
        failing_read = 0;
        EXPECT_EQ(run.errors.size(), run.result ? 0u : 1u);
        const std::string text = run.result ? *run.result : run.errors.at(0);
        if (first.empty()) first = text;
        EXPECT_EQ(text, first);
    }
    return first;
}

TEST(Files, that_are_not_there_are_no_functions) {
    const std::string long_name(300, 'f');
    const SourceFiles files("main => file(), folder(), loop(), gone(), " + long_name + "()");
    mkdir(files.path("folder.m").c_str(), 0700);
    symlink("loop.m", files.path("loop.m").c_str());
    const std::string calls = "file();\nfolder();\nloop();\ngone();\n" + long_name + "();\n";
    EXPECT_EQ(outcome(files.path("main.m")), calls);
    StandInHost host;
    // a file in the place of a directory
    const HostValue path[] = {host.values().list_of_strings({files.path("main.m")})};
    EXPECT_EQ(translate(host, "file", files.path("main.m"), path), calls);
}

TEST(Files, that_cannot_be_opened_are_errors) {
    const SourceFiles files("main => f(1)   script => g(1)   g => f(2)   other/f => function f");
    const std::string callee = files.path("f.m");
    mknod(callee.c_str(), S_IFSOCK | 0700, 0);
    const std::string error = "unable to open " + callee + ": No such device or address";
    EXPECT_EQ(outcome(files.path("main.m")), error);
    EXPECT_EQ(outcome(files.path("script.m")), error);
    EXPECT_EQ(outcome(callee), "unable to open \"" + callee + "\"");
    StandInHost host;  // in front of another
    const HostValue path[] = {host.values().list_of_strings({files.path("other"), files.path("")})};
    EXPECT_EQ(translate(host, "file", files.path("main.m"), path),
              "error: unable to open " + files.path("") + "/f.m: No such device or address");
}

TEST(Files, that_cannot_be_read_are_errors_at_their_place) {
    std::string comments;  // more than is read at once
    for (int i = 0; i < 1000; i++) comments += "%" + std::string(98, 'c') + "\n";
    const SourceFiles files("small => x = 1;   main => folder()");
    files.write("big.m", "x = 1;\n" + comments);
    mkdir(files.path("folder").c_str(), 0700);
    const std::string message = ", input in flex scanner failed\n";
    const auto place = [&](int line, const char *file) {
        return "on line " + std::to_string(line) + " of " + files.path(file) + message;
    };
    EXPECT_EQ(outcome(files.path("small.m"), 1), place(1, "small.m") + "\n^\n");
    EXPECT_EQ(outcome(files.path("big.m"), 1), place(1, "big.m") + "\n^\n");
    EXPECT_EQ(outcome(files.path("big.m"), 2), place(83, "big.m") + "\n^\n");
    EXPECT_EQ(outcome(files.path("folder")), place(1, "folder") + "\n^\n");
    symlink("/proc/self/mem", files.path("folder.m").c_str());
    EXPECT_EQ(outcome(files.path("main.m")), place(1, "folder.m") + "\n        ^\n");
}

TEST(Files, that_are_cut_while_they_are_read_are_errors) {
    const std::string whole = "x = 1;\n" + std::string(20000, '\n');
    const std::string large = whole + std::string(80000, '\n');
    const SourceFiles files("");
    const std::string path = files.path("main.m");
    const auto outcome_of = [&](const std::string &text, int read) {
        StandInHost host;
        files.write("main.m", text);
        cut_file = path.c_str();
        failing_read = read;
        const std::string result = translate(host, "file", path);
        failing_read = 0;
        cut_file = nullptr;
        return result.substr(0, result.find(path));
    };
    const struct {
        const std::string &text;
        int read;
        const char *outcome;
    } rows[] = {{whole, 1, "error: on line 1 of "},
                {whole, 0, "x := 1;\n"},
                {large, 1, "error: on line 1 of "},
                {large, 3, "error: on line 1 of "},
                {large, 0, "x := 1;\n"}};
    for (const auto &row : rows) EXPECT_EQ(outcome_of(row.text, row.read), row.outcome);
}

/* The open files of this process that lie in the directory of files. */
std::vector<int> open_files(const SourceFiles &files) {
    const std::string directory = std::filesystem::canonical(files.path(""));
    std::vector<int> found;
    for (const auto &entry : std::filesystem::directory_iterator("/proc/self/fd")) {
        std::error_code gone;
        const auto target = std::filesystem::read_symlink(entry.path(), gone);
        if (target.string().starts_with(directory))
            found.push_back(std::stoi(entry.path().filename()));
    }
    return found;
}

TEST(Files, are_open_no_longer_than_needed) {
    const SourceFiles files("main => look()");
    files.write("big.m", "look()\n%" + std::string(100000, 'c'));
    StandInHost host;
    std::vector<int> seen;
    host.translate_function("look", [&](const auto &) {
        seen = open_files(files);
        for (const int file : seen) EXPECT_EQ(fcntl(file, F_GETFD), FD_CLOEXEC);
        return "seen";
    });
    EXPECT_EQ(translate(host, "file", files.path("main.m")), "seen;\n");
    EXPECT_EQ(seen.size(), 0u);
    translate(host, "file", files.path("big.m"));
    EXPECT_EQ(seen.size(), 1u);
    EXPECT_EQ(open_files(files).size(), 0u);
    files.write("other.m", read_file(files.path("big.m")));
    files.write("calls.m", "big(), other()");
    translate(host, "file", files.path("calls.m"));
    EXPECT_EQ(seen.size(), 1u);
}

/* Leaves this process room for count files more, as long as it lives. */
class FewFiles {
public:
    explicit FewFiles(int count) {
        const int lowest = dup(0);
        close(lowest);
        getrlimit(RLIMIT_NOFILE, &before_);
        const rlimit few{static_cast<rlim_t>(lowest + count), before_.rlim_max};
        setrlimit(RLIMIT_NOFILE, &few);
    }
    ~FewFiles() { setrlimit(RLIMIT_NOFILE, &before_); }
    FewFiles(const FewFiles &) = delete;
    FewFiles &operator=(const FewFiles &) = delete;

private:
    rlimit before_{};
};

TEST(Files, do_not_go_missing_when_descriptors_run_out) {
    const SourceFiles files("f0 => x = 1");
    std::string expected = "x := 1;\n";
    for (int i = 1; i < 40; i++) {
        const std::string call = "f" + std::to_string(i - 1) + "()";
        files.write("f" + std::to_string(i) + ".m", call);
        expected += call + ";\n";
    }
    StandInHost host;
    host.leave_errors_by(ErrorExit::Return);  // the sanitizer needs files to check an exception
    const HostValue path[] = {host.values().list_of_strings({files.path("")})};
    std::string with_one;
    std::string with_none;
    {
        const FewFiles one(1);
        with_one = translate(host, "command", "f39()", path);
        const FewFiles none(0);
        with_none = translate(host, "command", "f39()", path);
    }
    EXPECT_EQ(with_one, expected + "f39();\n");
    EXPECT_EQ(with_none, "null");
    EXPECT_EQ(host.take_errors(),
              Texts{"unable to open " + files.path("") + "/f39.m: Too many open files"});
}

/* Interrupts this thread every millisecond, as long as it lives. */
class Interruptions {
public:
    Interruptions() {
        struct sigaction wake {};
        wake.sa_handler = [](int) {};
        sigaction(SIGALRM, &wake, &before_);
        every({0, 1000});
    }
    ~Interruptions() {
        every({0, 0});
        sigaction(SIGALRM, &before_, nullptr);
    }
    Interruptions(const Interruptions &) = delete;
    Interruptions &operator=(const Interruptions &) = delete;

private:
    static void every(timeval interval) {
        const itimerval timer{interval, interval};
        setitimer(ITIMER_REAL, &timer, nullptr);
    }
    struct sigaction before_ {};
};

/* Writes the pieces into the pipe slowly, in a thread that is not interrupted and waits for no
 * reader. */
std::thread slow_writer(const std::string &pipe, const Texts &pieces) {
    sigset_t alarms;
    sigemptyset(&alarms);
    sigaddset(&alarms, SIGALRM);
    pthread_sigmask(SIG_BLOCK, &alarms, nullptr);  // the new thread inherits it
    std::thread writer([=] {
        usleep(5000);
        const int file = open(pipe.c_str(), O_RDWR);
        for (const std::string &piece : pieces) {
            EXPECT_EQ(write(file, piece.data(), piece.size()), ssize_t(piece.size()));
            usleep(5000);
        }
        close(file);
    });
    pthread_sigmask(SIG_UNBLOCK, &alarms, nullptr);
    return writer;
}

TEST(Files, may_be_pipes_and_be_interrupted) {
    const SourceFiles files("main => f(1)");
    mkfifo(files.path("f.m").c_str(), 0700);
    const std::string letters(9000, 'c');
    StandInHost host;
    for (const char *main : {"main.m", "f.m"}) {
        std::thread writer = slow_writer(
            files.path("f.m"), {"func", "tion f\nx = '", letters, letters + "';\ny", " = 2"});
        std::string text;
        {
            const Interruptions interruptions;
            text = translate(host, "file", files.path(main));
        }
        writer.join();
        EXPECT_EQ(text.erase(26, 18000),
                  "f := proc(  )\n;\n    x := \"\";\n    y := 2;\n    end proc;"
                  "\n\n" +
                      std::string(main[0] == 'm' ? "f(1);\n" : ""));
    }
}

}  // namespace

}  // namespace mtranslate
