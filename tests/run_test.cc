/* Runs: what the host is asked, which files are translated in which order, what a run leaves, and
 * what becomes of it when the heap is exhausted. */
#include <gtest/gtest.h>
#include <mtranslate_program.h>
#include <sched.h>
#include <sys/mman.h>
#include <sys/wait.h>
#include <unistd.h>

#include <filesystem>
#include <optional>
#include <regex>
#include <vector>

#include "emit/statements.h"
#include "support/allocation.h"
#include "tests/translation.h"

// NOLINTBEGIN(bugprone-reserved-identifier): the linker's names
extern "C" {
void *__real_malloc(size_t size);
void *__real_calloc(size_t count, size_t size);
void *__real_realloc(void *block, size_t size);
void __real_free(void *block);
void *__real_mmap(void *at, size_t size, int protection, int flags, int file, off_t offset);
int __real_munmap(void *region, size_t size);
}

namespace mtranslate {

namespace {

/* The heap of the statically linked objects. */
struct Heap {
    long live = 0;         /* blocks given out and not taken back */
    long next_fail = 0;    /* allocations up to the one that fails; 0 for none */
    bool for_good = false; /* whether those after it fail too */
    bool has_failed = false;
    int regions = 0; /* mapped and not unmapped */
    bool has_no_regions = false;

    bool fails() {
        if (next_fail != 1) {
            if (next_fail > 1) next_fail--;
            return false;
        }
        if (!for_good) next_fail = 0;
        has_failed = true;
        return true;
    }
    void *note(void *block) {
        if (block) live++;
        return block;
    }
};
Heap heap;

}  // namespace

}  // namespace mtranslate

extern "C" {
using mtranslate::heap;

void *__wrap_malloc(size_t size) { return heap.fails() ? nullptr : heap.note(__real_malloc(size)); }

void *__wrap_calloc(size_t count, size_t size) {
    return heap.fails() ? nullptr : heap.note(__real_calloc(count, size));
}

void *__wrap_realloc(void *block, size_t size) {
    if (heap.fails()) return nullptr;
    void *resized = __real_realloc(block, size);
    if (!block) heap.note(resized);
    return resized;
}

void __wrap_free(void *block) {
    if (block) heap.live--;
    __real_free(block);
}

void *__wrap_mmap(void *at, size_t size, int protection, int flags, int file, off_t offset) {
    if (heap.has_no_regions) return MAP_FAILED;
    heap.regions++;
    return __real_mmap(at, size, protection, flags, file, offset);
}

int __wrap_munmap(void *region, size_t size) {
    heap.regions--;
    return __real_munmap(region, size);
}
}
// NOLINTEND(bugprone-reserved-identifier)

namespace mtranslate {

namespace {

/* The recorded calls: a name that was asked as it stands, a function as "call(name, arguments)". */
std::string shown_calls(StandInHost &host) {
    std::string calls;
    for (const std::string &call : host.take_calls()) calls += (calls.empty() ? "" : " ") + call;
    calls = std::regex_replace(calls, std::regex("TranslateName\\((\\w+)\\)"), "$1");
    return std::regex_replace(calls, std::regex("TranslateFunction"), "call");
}

TEST(HostCalls, come_in_order_of_the_source) {
    StandInHost host;
    host.translate_name("pi", "my_pi");
    host.translate_function("sin", "map(sin, A)");
    host.record_calls();
    for (const Row &row : short_rows(table("host_calls"))) {
        for (int i = 0; i < 2; i++) {
            translate(host, "command", row.source);
            EXPECT_EQ(shown_calls(host), row.expected) << row.source;
            leave_broken_run();
        }
    }
    // in the next pass an unanswered call is asked again
    const SourceFiles files("main => f(1), f(2), a()   a => f(3)");
    translate(host, "file", files.path("main.m"));
    EXPECT_EQ(shown_calls(host), "f call(f, 1) f a call(a) f call(f, 3)");
    const HostValue off[] = {
        host.values().equation(host.values().name("AddTranslator"), host.values().boolean(false))};
    EXPECT_EQ(translate(host, "command", "sin(pi)", off), "sin(my_pi);\n");
    EXPECT_EQ(shown_calls(host), "sin pi");
}

TEST(HostCalls, take_strings_for_answers_alone) {
    StandInHost host;
    ValueStore &values = host.values();
    for (const HostValue other : {values.name("a"), values.list_of_strings({"a"}),
                                  values.boolean(true), ValueStore::integer(1)}) {
        host.answer_otherwise(other);
        EXPECT_EQ(translate(host, "command", "x = f(y, 1)"), "x := f(y, 1);\n");
    }
}

TEST(HostCalls, may_be_answered_by_an_empty_name) {
    StandInHost host;
    host.translate_name("g", "");
    const HostValue matlab[] = {
        host.values().equation(host.values().name("Language"), host.values().string("matlab"))};
    EXPECT_EQ(translate(host, "command", "function f\nglobal g\ng = 1;\nend", matlab),
              "f := proc(  )\n  global ;\n\n   := 1;\nend proc;\n\n");
}

/* The files of a program, and a file run's translation of them, each procedure and statement
 * reduced to its name: "a b()" for a procedure a and a statement b(). */
std::string order_of(const char *table, const std::vector<Texts> &paths = {},
                     bool add_translator = true) {
    const SourceFiles files(table);
    StandInHost host;
    ValueStore &values = host.values();
    std::vector<HostValue> options;
    for (Texts path : paths) {
        for (std::string &directory : path) directory = files.path(directory);
        options.push_back(values.list_of_strings(path));
    }
    if (!add_translator)
        options.push_back(values.equation(values.name("AddTranslator"), values.boolean(false)));
    std::string text = translate(host, "file", files.path("main.m"), options);
    leave_broken_run();
    EXPECT_EQ(translate(host, "file", files.path("main.m"), options), text);
    text = std::regex_replace(text, std::regex(" := proc\\([\\s\\S]*?end proc;\\n"), "");
    text = std::regex_replace(text, std::regex("\\n+"), " ");
    return text.substr(0, text.find_last_not_of(' ') + 1);
}

TEST(Resolution, takes_names_by_hash_and_in_passes) {
    // one-letter names are visited in the order e a f b g c h d
    EXPECT_EQ(order_of(R"(
main => function main\nd(), c(), b(), f(1), e(), none()   f => function f\nh(), a()
b => function b\nf()   c => function c\nfunction g   d => function d\ng(), @b
e => function e\nmain()   a => function a\ni()   g => function never   h => function h
i => function i)"),
              "main e f b c g d a h i");
    // defined in the main file, a variable, a bare name, and a handle
    EXPECT_EQ(order_of(R"(
main => function main\na(), b = 1, b(1), c, @d\nfunction a   a => function never
b => function never   c => function never   d => function d)"),
              "main a d");
}

TEST(Resolution, puts_called_functions_before_a_script) {
    // b, a script, resolves what was called so far in its pass, a's c among it
    EXPECT_EQ(order_of(R"(main => a()\nb()   a => function a\nc()   b => d()\nc()
c => function c   d => function d)"),
              "a c d d(); c(); a(); b();");
    EXPECT_EQ(order_of("main => a()   a => b()   b => a()\\nb()"), "a(); b(); b(); a();");
    EXPECT_EQ(order_of(R"(main => function f\na()\nend\nb()   a => function a   b => function b)"),
              "f a b b();");
}

TEST(Resolution, searches_the_last_directory_first) {
    const char *const files = R"(
main => f()\n@g   f => function own   1/f => function f1   2/f => function f2   3/f => function f3
1/g => function g1)";
    EXPECT_EQ(order_of(files), "own f(); g;");
    EXPECT_EQ(order_of(files, {{"1", "2"}}), "f2 g1 f(); g;");
    EXPECT_EQ(order_of(files, {{"1", "2"}, {"3"}}), "f3 g1 f(); g;");
    EXPECT_EQ(order_of(files, {{"2", "1"}, {"none"}}), "f1 g1 f(); g;");
    EXPECT_EQ(order_of(files, {Texts{}}), "f(); g;");
    EXPECT_EQ(order_of(files, {{"1", "2"}}, false), "g1 f(); g;");
    EXPECT_EQ(order_of(files, {{repeated("./", 550) + "3"}}), "f3 f(); g;");
}

/* A process of its own, whose root the directory becomes. */
[[noreturn]] void translate_in_root(const SourceFiles &files) {
    const bool allowed = chroot(files.path("").c_str()) == 0 ||
                         (unshare(CLONE_NEWUSER) == 0 && chroot(files.path("").c_str()) == 0);
    if (!allowed || chdir("/work") != 0) _exit(2);
    const Outcome outcome = run_leaving(ErrorExit::Throw, "file", "/main.m");
    _exit(outcome.result == "beside := 1;\nf();\n" ? 0 : 1);
}

TEST(Resolution, looks_beside_a_file_in_the_root_in_the_working_directory) {
    const SourceFiles files("main => f()   f => rooted = 1   work/f => beside = 1");
    const pid_t child = fork();
    if (child == 0) translate_in_root(files);
    int status = 0;
    waitpid(child, &status, 0);
    ASSERT_TRUE(WIFEXITED(status));
    if (WEXITSTATUS(status) == 2) GTEST_SKIP() << "no right to have a root of its own";
    EXPECT_EQ(WEXITSTATUS(status), 0);
}

TEST(Resolution, keeps_the_mode_but_not_packages_and_globals) {
    const SourceFiles files(R"(main => global g, x = y'; a()   a => function a\nz = [x y];)");
    expect_translation(
        "file", files.path("main.m"),
        "a := proc(  )\n    uses ArrayTools;\n;\n    z := Concatenate(2, x, y);\n"
        "    end proc;\n\nwith(LinearAlgebra):\nx := HermitianTranspose(y);\na();\n");
    StandInHost host;
    const HostValue path[] = {host.values().list_of_strings({files.path("")})};
    EXPECT_EQ(translate(host, "command", "a(), x = y'", path),
              "a := proc(  )\n    uses ArrayTools;\n;\n"
              "    z := ArrayTools:-Concatenate(2, x, y);\n    end proc;\n\n"
              "a();\nx := LinearAlgebra:-HermitianTranspose(y);\n");
}

/* A program that takes every road through the library that allocates. */
class EveryRoad : public testing::Test {
protected:
    EveryRoad()
        : files_(R"(
a => function y = a(n, varargin)\n% A.\nglobal t\ny = varargin{n};   b => function [u, v] = b\nu = a(2)
script => a(1)\nw = 'open to the end'\n)") {
        files_.write("main.m", "% " + std::string(40000, 'c') + R"(
global g h k
x = {1, 'it''s'; [2.5 3i], a(1:2:end)'};
[p, q] = b(@script, s.f, x{1}, -1.5e3);
load data.mat.gz now
for k = 1:3, if k == 2, continue, else, x(:) = 1; end % loop
end
while ~q, switch x, case {1, 2}, y, otherwise, z, end, end
)" + repeated("u = [1 2 3 4 5 6 7 8 9 10 11 12];\n", 110));
    }
    std::string main() const { return files_.path("main.m"); }
    std::string matlab_main() const { return matlab_files_.path("main.m"); }

private:
    SourceFiles files_;
    SourceFiles matlab_files_{R"(
main => setup\n% licence\nfunction y = f(x, n, varargin)\n% help\nglobal g\npersistent p\nif nargin < 2 && isempty(p(end)), n = @(t) t'*x; end\nfor k = 1:3, s(k).a.b = {k, 'it''s'; [1 2], x(2:end-1)}; end, disp(k)\nfunction h\nx(3) = []; y = f(varargin{:}); end\nswitch y, case {1, 2}, h; otherwise, b(@a), end\nend
setup => n = a(1) + m;   a => function [u, v] = a(x)\nu = x; v = [x u; u x];\nend\nfunction f\nend
b => function b\nx = a(1)\nsetup   private/m => function m\n)"};
};

/* Runs main with the n-th allocation failing. */
void run_failing(ErrorExit exit, const std::string &main, const char *language, long n,
                 bool for_good) {
    mTranslateRelease();
    const long live = heap.live;
    heap.next_fail = n;
    heap.for_good = for_good;
    heap.has_failed = false;
    const Texts errors = run_leaving(exit, "file", main, language).errors;
    heap.next_fail = 0;
    mTranslateRelease();
    ASSERT_EQ(heap.live, live) << "blocks of a run whose allocation " << n << " failed";
    ASSERT_EQ(errors.empty(), !heap.has_failed) << n;
    if (errors.empty()) return;
    // only the first: a parse given up inside brackets, after an error that returned, shows in the
    // files after it
    const std::string &error = errors.front();
    static const std::regex texts(
        "system memory exhausted|on line .*, memory exhausted\n[\\s\\S]*|"
        "out of dynamic memory in yy_(create_buffer|scan_buffer|scan_bytes)\\(\\)|"
        "fatal error - scanner input buffer overflow");
    ASSERT_TRUE(std::regex_match(error, texts)) << error;
}

/* A source that costs more than a few megabytes, and what is said of it. */
struct Costly {
    const char *language, *megabytes;
    std::string source, error;
};

const std::vector<Costly> CostlySources = {
    {"classic", "8", "x = 1\ny = a" + repeated("'", 4000) + "\n",
     "on line 2.* takes more than 8 MB"},
    {"classic", "8", "y = " + repeated("~", 4000) + "a\n", "on line [23].* takes more than 8 MB"},
    {"classic", "8", "y = 1" + repeated(":1", 4000) + "\n", "on line [123].* takes more than 8 MB"},
    {"matlab", "4", "c = {};\ny = " + repeated("{c{:}, ", 390) + "1" + repeated("}", 390),
     "on line 2.* takes more than 4 MB"},
    {"octave", "1", repeated("y = 1;\n", 20000), "the translation takes more than 1 MB"},
    {"matlab", "8", repeated("if x\n", 390) + repeated("%\n", 41500) + repeated("end\n", 390),
     PartsShareBlocks ? "the translation is longer than 4 MB"
                      : ".*the translation (takes more|is longer) than"},
};

/* What a run says, and the error of one that goes beyond its budget. */
std::string run_with(StandInHost &host, const char *mode, const char *language,
                     const std::string &source, const char *megabytes) {
    ValueStore &values = host.values();
    const HostValue options[] = {
        values.equation(values.name("Language"), values.string(language)),
        values.equation(values.name("MaxMemory"), values.string(megabytes))};
    std::string said;
    try {
        said = host.translate(mode, source, options).value_or("");
    } catch (const HostError &error) {
        said = error.what();
    }
    for (const std::string &error : host.take_errors()) said += error;
    values.clear();
    return said;
}

TEST(Budget, ends_the_run_alone_that_goes_beyond_it) {
    for (const Costly &costly : CostlySources) {
        SCOPED_TRACE(costly.source.substr(0, 40));
        const SourceFiles files;
        files.write("main.m", costly.source);
        for (const ErrorExit exit : EVERY_EXIT) {
            StandInHost host;
            host.leave_errors_by(exit);
            mTranslateRelease();
            const long live = heap.live;
            const std::string before =
                run_with(host, "command", costly.language, "x = f(1)", "1000");
            for (const char *mode : {"command", "file"}) {
                const std::string error =
                    run_with(host, mode, costly.language,
                             *mode == 'f' ? files.path("main.m") : costly.source, costly.megabytes);
                EXPECT_TRUE(std::regex_search(error.substr(0, 200), std::regex("^" + costly.error)))
                    << error.substr(0, 200);
                EXPECT_EQ(run_with(host, "command", costly.language, "x = f(1)", "1000"), before);
            }
            mTranslateRelease();
            EXPECT_EQ(heap.live, live);
        }
    }
}

TEST(Budget, is_a_number_of_megabytes) {
    StandInHost host;
    for (const char *bad : {"", "0", "-1", "1.5", "much", "1048577", "99999999999999999999"})
        EXPECT_EQ(run_with(host, "command", "matlab", "x = 1", bad),
                  "invalid input: MaxMemory must be a number of megabytes");
    EXPECT_EQ(run_with(host, "command", "matlab", "x = 1", "1048576"), "x := 1;\n");
}

/* Without the option, by what the source has given. */
TEST(Budget, grows_with_the_source) {
    StandInHost host;
    host.leave_errors_by(ErrorExit::Return);
    EXPECT_EQ(host.translate("command", "y = a" + repeated("'", 16000)), std::nullopt);
    const Texts errors = host.take_errors();
    ASSERT_EQ(errors.size(), 1u);
    EXPECT_NE(errors[0].find("takes more than 286 MB of memory"), std::string::npos) << errors[0];
}

/* Whether kept parts share blocks, as long as it lives. */
class Sharing {
public:
    explicit Sharing(bool shares) { PartsShareBlocks = shares; }
    ~Sharing() { PartsShareBlocks = before_; }
    Sharing(const Sharing &) = delete;
    Sharing &operator=(const Sharing &) = delete;

private:
    const bool before_ = PartsShareBlocks;
};

/* Answers how many allocations there were. */
long fail_everywhere(ErrorExit exit, const std::string &main, const char *language) {
    const auto expected = run_leaving(ErrorExit::Throw, "file", main, language).result;
    long n = 1;
    heap.has_failed = true;
    for (; heap.has_failed && !testing::Test::HasFatalFailure(); n += 1 + n / 100) {
        run_failing(exit, main, language, n, n % 2 == 0);
        if (n % 10 == 0) {
            EXPECT_EQ(run_leaving(exit, "file", main, language).result, expected) << n;
        }
    }
    return n;
}

TEST_F(EveryRoad, survives_every_failing_allocation) {
    const Sharing none(false);
    for (const ErrorExit exit : EVERY_EXIT) {
        // so many that all of the programs was reached
        EXPECT_GT(fail_everywhere(exit, main(), "classic"), 300);
        EXPECT_GT(fail_everywhere(exit, matlab_main(), "matlab"), 300);
    }
}

/* Answers false where an allocation has failed. */
bool translate_for_tool(const std::string &main, const char *language,
                        const std::string &expected) {
    mTranslateProgramRequest request{};
    request.size = sizeof request;
    request.file = main.c_str();
    request.language = language;
    request.flags = MTRANSLATE_DETAILS | MTRANSLATE_TREE;
    const mTranslateProgramResult *result = mTranslateProgram(&request);
    const bool is_done = !heap.has_failed;
    // what bison says where its stack cannot grow, for whatever reason
    const bool has_stopped = result->status == MTRANSLATE_PROGRAM_STOPPED;
    if (has_stopped)
        EXPECT_EQ(std::string(result->failure), "memory exhausted");
    else
        EXPECT_EQ(result->status, is_done ? MTRANSLATE_PROGRAM_DONE : MTRANSLATE_PROGRAM_NO_MEMORY);
    EXPECT_EQ(std::string(result->text), is_done ? expected : "");
    mTranslateProgramRelease(result);
    return is_done;
}

TEST_F(EveryRoad, survives_every_failing_allocation_for_tools) {
    const Sharing none(false);
    for (const char *language : {"classic", "matlab"}) {
        const std::string source = *language == 'c' ? main() : matlab_main();
        const auto expected = run_leaving(ErrorExit::Throw, "file", source, language).result;
        mTranslateRelease();
        const long live = heap.live;
        bool is_done = false;
        for (long n = 1; !is_done && !testing::Test::HasFailure(); n += 1 + n / 100) {
            heap.has_failed = false;
            heap.for_good = n % 2 == 0;
            heap.next_fail = n;
            is_done = translate_for_tool(source, language, expected.value());
            heap.next_fail = 0;
            mTranslateRelease();
            EXPECT_EQ(heap.live, live) << n;
        }
    }
}

TEST_F(EveryRoad, keeps_a_region_from_run_to_run) {
    std::optional<std::string> first;
    for (const bool shares : {true, false}) {
        const Sharing sharing(shares);
        for (const bool has_none : {false, true}) {
            mTranslateRelease();
            EXPECT_EQ(heap.regions, 0);
            heap.has_no_regions = has_none;
            for (int i = 0; i < 2; i++) {
                const auto text = run_leaving(ErrorExit::Throw, "file", main()).result;
                if (!first) first = text;
                EXPECT_EQ(text, first);
                EXPECT_EQ(heap.regions, shares && !has_none ? 1 : 0);
            }
        }
        heap.has_no_regions = false;
    }
}

long open_files() {
    return std::distance(std::filesystem::directory_iterator("/proc/self/fd"), {});
}

TEST_F(EveryRoad, holds_nothing_after_a_run) {
    mTranslateRelease();
    const long live = heap.live;
    const long files = open_files();
    run_leaving(ErrorExit::Throw, "file", main());
    EXPECT_EQ(heap.live, live);
    const SourceFiles broken("main => f(1)   f => g(1)   g => x = [1, {f('open");
    for (const ErrorExit exit : EVERY_EXIT) {
        for (const char *source : {"x = [1, {f('open", "x = )", "global a b\nfor k = 1:end, end"}) {
            EXPECT_EQ(run_leaving(exit, "command", source).errors.size(), 1u);
            mTranslateRelease();
            mTranslateRelease();
            EXPECT_EQ(heap.live, live) << source;
            run_leaving(exit, "Neither", source);
            EXPECT_EQ(heap.live, live) << source;
        }
        EXPECT_EQ(run_leaving(exit, "file", broken.path("main.m")).errors.size(), 1u);
        mTranslateRelease();
        EXPECT_EQ(open_files(), files);
    }
}

TEST(Runs, show_hosts_what_was_parsed_last) {
    const SourceFiles files(R"(
main => function a\nreturn\nend\nfunction b\ng(1)   g => look())");
    StandInHost host;
    int kind = -1;
    host.translate_function("look", [&kind](const auto &) {
        kind = InputSequence->kind;
        return "seen";
    });
    translate(host, "file", files.path("main.m"));
    EXPECT_EQ(kind, STAT_RETURN);  // the body of the first function
    EXPECT_EQ(yychar, 0);
    EXPECT_EQ(yynerrs, 0);
    EXPECT_STREQ(SourceText, "");  // the run's own copies are gone
    EXPECT_STREQ(PrevLine, "");
}

/* Options of a run are its own: neither the path nor the translator's flag is left. */
TEST(Runs, begin_afresh) {
    const SourceFiles files("f => function f\\nx = 1");
    StandInHost host;
    host.translate_function("sin", "map(sin, A)");
    ValueStore &values = host.values();
    const HostValue options[] = {
        values.list_of_strings({files.path("")}),
        values.equation(values.name("AddTranslator"), values.boolean(false))};
    const std::string procedure_text = "f := proc(  )\n;\n    x := 1;\n    end proc;\n\n";
    for (int i = 0; i < 2; i++) {
        EXPECT_EQ(translate(host, "command", "sin(1), @f, x(1:2)", options),
                  procedure_text + "sin(1);\nf;\nx(Vector[row]([seq(1..2)]));\n");
        EXPECT_EQ(translate(host, "command", "x(1:2), sin(1), f()"),
                  "x(Vector[row]([seq(1..2)]));\nmap(sin, A);\nf();\n");
        EXPECT_THROW(host.translate("command", "global x y\nx = [1 {(", options), HostError);
        EXPECT_EQ(translate(host, "command", "function g\nx(1:2) -1"),
                  "g := proc(  )\n;\n    x(Vector[row]([seq(1..2)])) -~ 1;\n    end proc;\n\n");
    }
}

}  // namespace

}  // namespace mtranslate
