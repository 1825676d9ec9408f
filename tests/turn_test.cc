/* One run at a time: calls of the library from a host's operations and from other threads while a
 * run is under way, runs that a host leaves from anywhere, and the end of the process. */
#include <gtest/gtest.h>

#include <csetjmp>
#include <thread>

#include "tests/translation.h"

namespace mtranslate {

namespace {

constexpr const char *REFUSAL = "a translation is already running";

/* A host that answers nothing and returns from errors. At one of the library's calls it does
 * something else first. */
struct Host {
    ValueStore values;
    Texts errors;
    long calls = 0;
    long disturbed_call = 0; /* from 1 */
    bool in_error = false;   /* whether that is RaiseError */
    void (*disturb)() = [] {};
    std::jmp_buf exit;
};
Host &host = *new Host;  // there to the end of the process

bool is_disturbed() { return ++host.calls == host.disturbed_call; }

void step() {
    if (is_disturbed()) host.disturb();
}

HostValue raise(const char *message, HostValue) {
    host.errors.emplace_back(message);
    if (is_disturbed()) {
        host.in_error = true;
        host.disturb();
    }
    return 0;
}

const HostKernelTable kernel = {
    raise,
    [](HostValue, HostValue) { return step(), HostValue{0}; },
    [](const char *) { return step(), HostValue{0}; },
    [](HostValue value) { return step(), is_a(ValueType::String, value) ? 1 : 0; },
    [](HostValue list, int index) { return step(), element_of(list, index); },
    [](HostValue value) { return step(), to_boolean(value) ? 1 : 0; },
    [](HostValue value) { return step(), text_of(value); },
    [](HostValue value) { return step(), element_count(value); },
    [](int count) { return step(), host.values.sequence(static_cast<std::size_t>(count)); },
    [](const char *text) { return step(), host.values.string(text); },
    [](HostValue value) { return step(), is_a(ValueType::List, value) ? 1 : 0; }};

/* The text of a run whose call number `call` is disturbed; every operation is called in it. */
std::string run_disturbed(long call, void (*disturb)()) {
    ValueStore &values = host.values;
    values.clear();
    const HostValue arguments[] = {
        values.string("command"), values.string("y = f(a);\nz = @g\nfunction h\n)"),
        values.list_of_strings({"."}),
        values.equation(values.name("AddTranslator"), values.boolean(true))};
    const HostValue vector = values.sequence(arguments);
    host.errors.clear();
    host.calls = 0;
    host.disturbed_call = call;
    host.in_error = false;
    host.disturb = disturb;
    if (setjmp(host.exit)) return "left";
    try {
        const HostValue result = mTranslate(&kernel, vector);
        return result ? text_of(result) : "null";
    } catch (const HostError &error) {
        return error.what();
    }
}

std::string run_undisturbed() { return run_disturbed(0, nullptr); }

/* Another run, on a host of its own whose errors leave in every way, and a release. */
void translate_again() {
    static int turn = 0;
    const ErrorExit exit = EVERY_EXIT[turn++ % 3];
    const Outcome outcome = run_leaving(exit, "command", "global x y\nx = {1");
    EXPECT_EQ(outcome.result, std::nullopt);
    EXPECT_EQ(outcome.errors, Texts{REFUSAL});
    mTranslateRelease();
}

void translate_on_another_thread() { std::thread(translate_again).join(); }

TEST(Turns, are_refused_while_a_run_has_one) {
    const std::string text = run_undisturbed();
    const Texts errors = host.errors;
    const long calls = host.calls;
    ASSERT_EQ(errors.size(), 1u);
    for (long call = 1; call <= calls; call++) {
        SCOPED_TRACE(call);
        EXPECT_EQ(run_disturbed(call, translate_again), text);
        EXPECT_EQ(host.errors, errors);
        // another thread cannot know whether RaiseError will return
        const std::string other = run_disturbed(call, [] {
            if (!host.in_error) translate_on_another_thread();
        });
        EXPECT_EQ(other, text);
    }
}

TEST(Turns, go_to_another_thread_in_an_error) {
    run_undisturbed();
    const long calls = host.calls;
    bool tried = false;
    for (long call = 1; call <= calls; call++) {
        const std::string text = run_disturbed(call, [] {
            if (!host.in_error) return;
            std::thread([] {
                EXPECT_EQ(run_leaving(ErrorExit::Throw, "command", "x=1").result, "x := 1;\n");
            }).join();
        });
        if (!host.in_error) continue;
        EXPECT_EQ(text, "null");
        tried = true;
    }
    EXPECT_TRUE(tried);
    EXPECT_NE(run_undisturbed(), "null");
}

/* A run further down the stack than the one that was left. */
std::string run_below(int levels) {
    volatile char frame[2000];
    frame[levels] = 0;
    const std::string text = levels > 0 ? run_below(levels - 1) : run_undisturbed();
    return text + static_cast<char>(frame[levels]);
}

TEST(Turns, end_when_a_run_is_left) {
    const std::string text = run_undisturbed();
    const long calls = host.calls;
    for (long call = 1; call <= calls; call++) {
        SCOPED_TRACE(call);
        for (const int levels : {0, 5}) {
            EXPECT_EQ(run_disturbed(call, [] { std::longjmp(host.exit, 1); }), "left");
            EXPECT_EQ(run_below(levels).substr(0, text.size()), text);
        }
        EXPECT_EQ(run_disturbed(call, [] { throw HostError("thrown"); }), "thrown");
        std::thread([&text] { EXPECT_EQ(run_undisturbed(), text); }).join();
        // a refused call may leave both runs
        const std::string refused = run_disturbed(call, [] {
            const HostValue nothing = host.values.sequence(0);
            HostKernelTable leaving = kernel;
            leaving.RaiseError = [](const char *message, HostValue) -> HostValue {
                throw HostError(message);
            };
            mTranslate(&leaving, nothing);
        });
        EXPECT_EQ(refused, REFUSAL);
        EXPECT_EQ(run_undisturbed(), text);
    }
}

bool lingers;

/* Run after the library's own destructor. */
__attribute__((destructor)) void linger() {
    if (lingers) std::this_thread::sleep_for(std::chrono::milliseconds(20));
}

TEST(Turns, leave_the_end_of_the_process_alone) {
    const auto end_while_translating = [] {
        lingers = true;
        std::thread([] {
            for (;;) run_undisturbed();
        }).detach();
        std::this_thread::sleep_for(std::chrono::milliseconds(2));
        std::exit(0);
    };
    for (int i = 0; i < 3; i++)
        EXPECT_EXIT(end_while_translating(), testing::ExitedWithCode(0), "");
}

}  // namespace

}  // namespace mtranslate
