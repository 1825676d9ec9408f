/* The stand-in host: the kernel table and the answers behind it. */
#include "host/stand_in_host.h"

#include <cassert>
#include <utility>

namespace mtranslate {

namespace {

/* The host whose run is going on, or null: set and reset by run, read by the kernel operations. */
StandInHost *current_host = nullptr;

constexpr std::string_view NAME_PROCEDURE = "Matlab:-TranslateName";
constexpr std::string_view FUNCTION_PROCEDURE = "Matlab:-TranslateFunction";

/* Makes host the current one for as long as this lives, however the run ends. */
class CurrentHost {
public:
    explicit CurrentHost(StandInHost *host) {
        assert(current_host == nullptr);
        current_host = host;
    }
    ~CurrentHost() { current_host = nullptr; }
    CurrentHost(const CurrentHost &) = delete;
    CurrentHost &operator=(const CurrentHost &) = delete;
};

/* message with value in the place of "%1". A message without a value is taken as it stands: the
 * source line that it shows may hold "%1" itself. */
std::string insert_value(std::string message, HostValue value) {
    const std::size_t place = message.find("%1");
    if (value != 0 && place != std::string::npos) message.replace(place, 2, to_display(value));
    return message;
}

/* Those of the elements from first on, counted from 1. */
std::vector<std::string> element_texts(HostValue sequence, int first) {
    const int count = element_count(sequence);
    std::vector<std::string> texts;
    texts.reserve(static_cast<std::size_t>(count));
    for (int i = first; i <= count; ++i) texts.emplace_back(text_of(element_of(sequence, i)));
    return texts;
}

std::string join(const std::vector<std::string> &texts) {
    std::string joined;
    for (const std::string &text : texts) joined += (joined.empty() ? "" : ", ") + text;
    return joined;
}

}  // namespace

/* The operations of the kernel table, in its order. They run in the current host. */
struct StandInHost::Kernel {
    static HostValue raise_error(const char *message, HostValue value) {
        current_host->raise(message, value);
        if (current_host->error_exit_ == ErrorExit::Jump) std::longjmp(current_host->run_exit_, 1);
        return 0;
    }
    static HostValue call_host_function(HostValue procedure, HostValue argument) {
        const std::string_view name = text_of(procedure);
        if (name == NAME_PROCEDURE) return current_host->answer_name(argument);
        if (name == FUNCTION_PROCEDURE) return current_host->answer_function(argument);
        return 0;
    }
    static HostValue resolve_host_name(const char *name) {
        return current_host->values_.name(name);
    }
    static int is_string(HostValue value) { return is_a(ValueType::String, value) ? 1 : 0; }
    static HostValue list_element(HostValue list, int index) { return element_of(list, index); }
    static int to_boolean(HostValue value) { return mtranslate::to_boolean(value) ? 1 : 0; }
    static const char *to_text(HostValue value) { return text_of(value); }
    static int element_count(HostValue value) { return mtranslate::element_count(value); }
    static HostValue new_sequence(int count) {
        return current_host->values_.sequence(static_cast<std::size_t>(count));
    }
    static HostValue to_host_string(const char *text) { return current_host->values_.string(text); }
    static int is_list(HostValue value) { return is_a(ValueType::List, value) ? 1 : 0; }

    static constexpr HostKernelTable table() {
        return {raise_error,
                call_host_function,
                resolve_host_name,
                is_string,
                list_element,
                to_boolean,
                to_text,
                element_count,
                new_sequence,
                to_host_string,
                is_list};
    }
};

StandInHost::~StandInHost() { mTranslateRelease(); }

void StandInHost::translate_name(std::string name, std::string translation) {
    names_.insert_or_assign(std::move(name), std::move(translation));
}

void StandInHost::translate_function(std::string name, std::string text) {
    translate_function(std::move(name), [text = std::move(text)](const auto &) { return text; });
}

void StandInHost::translate_function(std::string name, FunctionAnswer answer) {
    functions_.insert_or_assign(std::move(name), std::move(answer));
}

void StandInHost::on_error(std::function<void(const std::string &)> observer) {
    error_observer_ = std::move(observer);
}

std::vector<std::string> StandInHost::take_errors() { return std::exchange(errors_, {}); }

std::vector<std::string> StandInHost::take_calls() { return std::exchange(calls_, {}); }

HostValue StandInHost::run(HostValue args) {
    static constexpr HostKernelTable kernel = Kernel::table();
    const CurrentHost current(this);
    if (setjmp(run_exit_) != 0) return 0;
    return mTranslate(&kernel, args);
}

std::optional<std::string> StandInHost::translate(std::string_view mode, std::string_view source,
                                                  std::span<const HostValue> options) {
    std::vector<HostValue> args{values_.string(mode), values_.string(source)};
    args.insert(args.end(), options.begin(), options.end());
    const char *result = text_of(run(values_.sequence(args)));
    return result ? std::optional<std::string>(result) : std::nullopt;
}

void StandInHost::raise(const char *message, HostValue value) {
    std::string text = insert_value(message, value);
    record("RaiseError", text);
    if (error_observer_) error_observer_(text);
    if (error_exit_ == ErrorExit::Throw) throw HostError(text);
    errors_.push_back(std::move(text));
}

void StandInHost::record(std::string_view operation, std::string_view arguments) {
    if (recording_)
        calls_.push_back(std::string(operation).append("(").append(arguments).append(")"));
}

HostValue StandInHost::answer(const std::optional<std::string> &text) {
    return text ? values_.string(*text) : no_translation_;
}

HostValue StandInHost::answer_name(HostValue name) {
    const std::string_view text = text_of(name);
    record("TranslateName", text);
    const auto found = names_.find(text);
    if (found != names_.end()) return values_.string(found->second);
    return answer(other_names_ ? other_names_(text) : std::nullopt);
}

HostValue StandInHost::answer_function(HostValue call) {
    if (recording_) record("TranslateFunction", join(element_texts(call, 1)));
    const std::string_view name = text_of(element_of(call, 1));
    const auto found = functions_.find(name);
    if (found == functions_.end() && !other_functions_) return no_translation_;
    const std::vector<std::string> arguments = element_texts(call, 2);
    return answer(found == functions_.end() ? other_functions_(name, arguments)
                                            : found->second(arguments));
}

}  // namespace mtranslate
