/* Whole runs in matlab and octave, on a host that answers some questions. The first byte of the
 * input chooses the language, between command and file, whether the run keeps going, and how errors
 * leave. What is wrong is said at a place in the source, the translation has the form of host text,
 * and the next run is as in a fresh process. */
#include <sys/mman.h>
#include <unistd.h>

#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <string>

#include "diagnose/messages.h"
#include "host/stand_in_host.h"
#include "support/observers.h"
#include "tests/host_text.h"

using namespace mtranslate;

namespace {

bool HasFailure;

void check(bool condition, const char *what) {
    if (condition) return;
    std::fprintf(stderr, "%s\n", what);
    std::abort();
}

void check_message(void * /*context*/, const Message *message) {
    const Source *source = message->source;
    check(message->offset + message->length <= source->length, "a message outside of the source");
    check(place_of(message).line >= 1 && place_of(message).column >= 1,
          "a message without a place");
    check(!std::strchr(message->text, '\n') && *message->text, "a message that is no line");
    HasFailure |= is_failure(message->id);
}

/* The name of a file in memory that holds the text. */
std::string file_of(std::string_view text) {
    static const int file = memfd_create("source", 0);
    check(ftruncate(file, 0) == 0 && pwrite(file, text.data(), text.size(), 0) >= 0, "no file");
    return "/proc/self/fd/" + std::to_string(file);
}

void answer_some_questions(StandInHost &host) {
    host.translate_name("pi", "Pi");
    host.translate_name("x", "x_");
    host.translate_function("sin", "map(sin, A)");
    host.translate_function("try", "attempt();\nother(1);");
    host.translate_function("size", "ArrayTools:-Size(A)");
    host.translate_function("horzcat", "cat(A)");
}

std::optional<std::string> translate(StandInHost &host, unsigned char choice,
                                     std::string_view source) {
    ValueStore &values = host.values();
    const HostValue options[] = {
        values.equation(values.name("Language"),
                        values.string((choice & 1) != 0 ? "octave" : "matlab")),
        values.equation(values.name("KeepGoing"), values.boolean((choice & 4) != 0))};
    const bool from_file = (choice & 2) != 0;
    return host.translate(from_file ? "file" : "command",
                          from_file ? file_of(source) : std::string(source), options);
}

/* A translation there is unless an error was raised, and it is raised unless the run keeps going.
 */
void check_run(StandInHost &host, unsigned char choice, std::string_view source) {
    HasFailure = false;
    const bool raises = (choice & 4) == 0;
    try {
        const std::optional<std::string> text = translate(host, choice, source);
        const bool has_errors = !host.take_errors().empty();
        check(has_errors == (HasFailure && raises), "an error that is not raised, or raised alone");
        if (!text) return check(has_errors, "neither a translation nor an error");
        const std::string error = form_error(*text);
        if (!error.empty()) std::fprintf(stderr, "%s\n", text->c_str());
        check(error.empty(), error.c_str());
    } catch (const HostError &) {
        check(HasFailure && raises, "an error without a message");
    }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const unsigned char *data, std::size_t size) {
    if (size == 0) return 0;
    static StandInHost host;
    static const ErrorExit exits[] = {ErrorExit::Throw, ErrorExit::Return, ErrorExit::Jump};
    answer_some_questions(host);
    Observers observers{};
    observers.message = check_message;
    observe_next_run(observers);
    host.leave_errors_by(exits[data[0] / 8 % 3]);
    check_run(host, data[0], {reinterpret_cast<const char *>(data) + 1, size - 1});
    check(translate(host, 1, "a = 1;") == "a := 1;\n", "the next run differs");
    host.take_errors();
    host.values().clear();
    return 0;
}
