/* A host for the translator where no computer-algebra system is at hand: for tests, benchmarks and
 * trials.
 *
 *     StandInHost host;
 *     host.translate_function("grid", "make_grid(n, n)");
 *     std::cout << host.translate("command", "x = grid(n)").value();
 *
 * One object is one host. As the library's kernel table carries no context, the host whose run is
 * going on is kept process-wide: any number of hosts may exist, but only one may be in a run. */
#pragma once

#include <csetjmp>
#include <functional>
#include <map>
#include <optional>
#include <span>
#include <stdexcept>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include <mtranslate.h>

#include "host/value_store.h"

namespace mtranslate {

/* An error that the library raised. what() is its message, with the offending value in the place
 * of "%1". */
class HostError : public std::runtime_error {
public:
    using std::runtime_error::runtime_error;
};

/* How RaiseError leaves: by throwing HostError, by returning null, as a host does that only takes
 * note of errors, or by longjmp out of the run, whose result is then null. */
enum class ErrorExit { Throw, Return, Jump };

/* Computes the host text of a call from the texts of its arguments; no text leaves the call to the
 * library's own form. */
using FunctionAnswer =
    std::function<std::optional<std::string>(const std::vector<std::string> &arguments)>;

/* Computes the host's name for a name of the source, likewise. */
using NameAnswer = std::function<std::optional<std::string>(std::string_view name)>;
/* Computes the host text of a call of any function, likewise. */
using CallAnswer = std::function<std::optional<std::string>(
    std::string_view name, const std::vector<std::string> &arguments)>;

class StandInHost {
public:
    StandInHost() = default;
    /* Has the library let go of what a run of this host, left by an error, still holds. */
    ~StandInHost();
    StandInHost(const StandInHost &) = delete;
    StandInHost &operator=(const StandInHost &) = delete;

    /* Where arguments for run are made. The values that the library asks for are made there too,
     * results included, so the store grows with every run until it is cleared. Not to be cleared
     * during a run. */
    ValueStore &values() { return values_; }

    /* Answers of "Matlab:-TranslateName" and "Matlab:-TranslateFunction". Without any, every
     * question is answered by null. A later answer for the same name replaces the earlier one. */
    void translate_name(std::string name, std::string translation);
    void translate_function(std::string name, std::string text);
    void translate_function(std::string name, FunctionAnswer answer);
    /* What is asked for the names and the functions that have no answer of their own. */
    void translate_other_names(NameAnswer answer) { other_names_ = std::move(answer); }
    void translate_other_functions(CallAnswer answer) { other_functions_ = std::move(answer); }
    /* The answer where there is no translation, instead of null. */
    void answer_otherwise(HostValue value) { no_translation_ = value; }

    void leave_errors_by(ErrorExit exit) { error_exit_ = exit; }
    /* Has observer called with the message of every error, before RaiseError leaves: the library
     * still stands where it found the error. */
    void on_error(std::function<void(const std::string &message)> observer);
    /* Messages of the errors since the last call that were not thrown. */
    std::vector<std::string> take_errors();

    /* Starts keeping a text for each host procedure that the library calls, such as
     * "TranslateName(x)" or "TranslateFunction(f, a, b)", and for each error,
     * "RaiseError(message)". */
    void record_calls() { recording_ = true; }
    /* The texts recorded since the last call. */
    std::vector<std::string> take_calls();

    /* One run of the library. args: a sequence of host values, as mTranslate takes it. Throws
     * HostError, unless errors leave in another way. */
    HostValue run(HostValue args);
    /* The same with the argument vector made here; no value when the library answers null. The
     * options are host values: a list of directories (the last is tried first), an equation. */
    std::optional<std::string> translate(std::string_view mode, std::string_view source,
                                         std::span<const HostValue> options = {});

private:
    struct Kernel;

    void raise(const char *message, HostValue value);
    HostValue answer_name(HostValue name);
    HostValue answer_function(HostValue call);
    HostValue answer(const std::optional<std::string> &text);
    void record(std::string_view operation, std::string_view arguments);

    ValueStore values_;
    std::map<std::string, std::string, std::less<>> names_;
    std::map<std::string, FunctionAnswer, std::less<>> functions_;
    NameAnswer other_names_;
    CallAnswer other_functions_;
    HostValue no_translation_ = 0;
    std::function<void(const std::string &)> error_observer_;
    ErrorExit error_exit_ = ErrorExit::Throw;
    std::jmp_buf run_exit_;
    std::vector<std::string> errors_;
    std::vector<std::string> calls_;
    bool recording_ = false;
};

}  // namespace mtranslate
