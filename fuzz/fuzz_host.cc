/* Whole runs on a host whose answers are of every kind and length and differ from question to
 * question, and any of whose operations may leave the run, by longjmp or by an exception. The first
 * bytes of the input choose. There is a result unless an error was raised or the run was left, and
 * the next run is as in a fresh process. */
#include <mtranslate.h>

#include <csetjmp>
#include <cstring>

#include "fuzz/input.h"
#include "host/stand_in_host.h"

using namespace mtranslate;

namespace {

constexpr std::size_t CHOICES = 24;
constexpr unsigned MOST_OPERATIONS = 600; /* one of the first so many may leave */

struct Left {};

enum Leaving { BY_RETURN, BY_EXCEPTION, BY_JUMP };

struct OddHost {
    ValueStore values;
    Choices choices;
    std::string_view source;
    unsigned operations;    /* up to the one that leaves; 0 for none */
    Leaving leaves, raises; /* how that one does, and how errors do */
    int errors = 0;
    std::jmp_buf exit;
};
OddHost *Host;

void leave(Leaving by) {
    if (by == BY_EXCEPTION) throw Left();
    if (by == BY_JUMP) std::longjmp(Host->exit, 1);
}

void count() {
    if (Host->operations > 0 && --Host->operations == 0) leave(Host->leaves);
}

HostValue raise_error(const char *message, HostValue) {
    check(*message != '\0', "an error without a text");
    count();
    ++Host->errors;
    leave(Host->raises);
    return Host->choices.next();
}

/* Texts that break forms: quotes, brackets and lines that do not end, names of others, nothing. */
std::string odd_text(const char *asked, unsigned choice) {
    static const char *const texts[] = {
        "",       " ",      "\n",       "\"",       "`",      "'",    "(",         "]",
        "#",      "x\n\n#", "\x1b[31m", "\xff\x80", "a := b", "\\",   "end",       "1",
        "%1%s%n", "A",      "A, A",     "proc()",   "..",     "a, b", "f(A)[A]\r", ";:"};
    constexpr unsigned COUNT = std::size(texts);
    choice %= COUNT + 6;
    if (choice < COUNT) return texts[choice];
    if (choice == COUNT) return asked;
    if (choice == COUNT + 1) return std::string(70000, 'n');
    if (choice == COUNT + 2) return std::string(300, '(') + asked + std::string(300, ')');
    const std::size_t from = Host->choices.below(1000);
    if (choice == COUNT + 3 && from < Host->source.size())
        return std::string(Host->source.substr(from, Host->choices.next()));
    return std::string(asked) + "(A, " + asked + ")";
}

HostValue answer(HostValue argument) {
    const HostValue first =
        is_a(ValueType::Sequence, argument) ? element_of(argument, 1) : argument;
    const unsigned choice = Host->choices.next();
    switch (choice % 8) {
        case 0:
        case 1: return 0;
        case 2: return ValueStore::integer(choice);
        case 3: return Host->values.list(std::span(&first, 1));
        case 4: return Host->values.name(text_of(first));
        default: return Host->values.string(odd_text(text_of(first), Host->choices.next()));
    }
}

const HostKernelTable TABLE = {
    raise_error,
    [](HostValue, HostValue argument) { return count(), answer(argument); },
    [](const char *name) { return count(), Host->choices.flag() ? Host->values.name(name) : 0; },
    [](HostValue value) { return count(), is_a(ValueType::String, value) ? 1 << 30 : 0; },
    [](HostValue list, int index) { return count(), element_of(list, index); },
    [](HostValue value) { return count(), to_boolean(value) ? -1 : 0; },
    [](HostValue value) { return count(), text_of(value); },
    [](HostValue value) { return count(), element_count(value); },
    [](int size) { return count(), Host->values.sequence(static_cast<std::size_t>(size)); },
    [](const char *text) { return count(), Host->values.string(text); },
    [](HostValue value) { return count(), is_a(ValueType::List, value) ? 1 : 0; }};

HostValue arguments(std::string_view text) {
    static const char *const languages[] = {"classic", "matlab", "octave", "matlab"};
    ValueStore &values = Host->values;
    const auto set = [&](const char *name, HostValue value) {
        return values.equation(values.name(name), value);
    };
    const bool is_file = Host->choices.flag();
    const unsigned language = Host->choices.next();
    const HostValue list[] = {values.string(is_file ? "file" : "command"),
                              values.string(is_file ? file_of(text) : std::string(text)),
                              set("Language", values.string(languages[language % 4])),
                              set("KeepGoing", values.boolean(Host->choices.flag())),
                              set("Display", values.boolean(Host->choices.flag())),
                              set("MaxMemory", values.string("20"))};
    return values.sequence(list);
}

/* Whether the run came back by itself. */
__attribute__((noinline)) bool has_ended(std::string_view text) {
    if (setjmp(Host->exit) != 0) return false;
    try {
        const HostValue result = mTranslate(&TABLE, arguments(text));
        check(result != 0 || Host->errors > 0, "neither a translation nor an error");
    } catch (const Left &) {
        return false;
    }
    return true;
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const unsigned char *data, std::size_t size) {
    if (size < CHOICES) return 0;
    const std::string_view text(reinterpret_cast<const char *>(data) + CHOICES, size - CHOICES);
    Choices choices(data, CHOICES);
    const unsigned how = choices.next();
    const unsigned leaves_at = (how & 1) != 0 ? choices.below(MOST_OPERATIONS) : 0;
    OddHost host{{},
                 choices,
                 text,
                 leaves_at,
                 (how & 2) != 0 ? BY_EXCEPTION : BY_JUMP,
                 static_cast<Leaving>(how / 4 % 3),
                 0,
                 {}};
    Host = &host;
    has_ended(text);
    StandInHost next;
    check(next.translate("command", "x=f(1)") == "x := f(1);\n", "the next run differs");
    return 0;
}
