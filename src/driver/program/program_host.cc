// The host that a tool stands for. A text as a value is its address, a sequence that of its words.
#include <string.h>

#include "driver/program/program_run.h"
#include "run/last_error.h"
#include "support/allocation.h"

namespace {

constexpr char NAME_PROCEDURE[] = "Matlab:-TranslateName";

ProgramRun *current_run() { return static_cast<ProgramRun *>(Observing.context); }

HostValue value_of_text(const char *text) { return reinterpret_cast<HostValue>(text); }

const char *text_of_value(HostValue value) { return reinterpret_cast<const char *>(value); }

int32_t status_of(EndCause cause) {
    switch (cause) {
        case GIVEN_IS_WRONG: return MTRANSLATE_PROGRAM_STOPPED;
        case FILE_IS_UNREADABLE: return MTRANSLATE_PROGRAM_UNREADABLE;
        case RUN_IS_TOO_LARGE: return MTRANSLATE_PROGRAM_TOO_LARGE;
        case SYSTEM_LACKS_MEMORY: return MTRANSLATE_PROGRAM_NO_MEMORY;
    }
    return MTRANSLATE_PROGRAM_STOPPED;
}

// The message with the value's text in the place of its %1.
std::string failure_text(const char *message, HostValue value) {
    std::string text = LastError.line > 0 ? LastError.message : message;
    size_t place = value ? text.find("%1") : std::string::npos;
    if (place != std::string::npos) text.replace(place, 2, text_of_value(value));
    if (LastError.reason != 0) text.append(": ").append(strerror(LastError.reason));
    return text;
}

HostValue raise(const char *message, HostValue value) {
    end_program(current_run(), status_of(LastError.cause), failure_text(message, value));
}

// The first text of a call is its name.
mTranslateProgramQuestion question_of_call(HostValue sequence) {
    const HostValue *words = reinterpret_cast<const HostValue *>(sequence);
    mTranslateProgramQuestion question = {};
    question.kind = MTRANSLATE_QUESTION_CALL;
    question.name = text_of_value(words[1]);
    question.argument_count = static_cast<size_t>(words[0]) - 1;
    if (question.argument_count > 0)
        question.arguments = reinterpret_cast<const char *const *>(words + 2);
    return question;
}

mTranslateProgramQuestion question_of(const char *procedure, HostValue argument) {
    if (strcmp(procedure, NAME_PROCEDURE) != 0) return question_of_call(argument);
    mTranslateProgramQuestion question = {};
    question.kind = MTRANSLATE_QUESTION_NAME;
    question.name = text_of_value(argument);
    return question;
}

HostValue call_host_function(HostValue procedure, HostValue argument) {
    const mTranslateProgramRequest *request = &current_run()->request;
    mTranslateProgramQuestion question = question_of(text_of_value(procedure), argument);
    question.size = sizeof question;
    question.results = RequestedResults;
    const char *text = request->answer(request->context, &question);
    return text ? value_of_text(KeepText(text, strlen(text))) : 0;
}

HostValue new_sequence(int count) {
    size_t words = static_cast<size_t>(count) + 1;
    HostValue *sequence = static_cast<HostValue *>(AllocKept(words * sizeof(HostValue)));
    *sequence = static_cast<HostValue>(count);
    return reinterpret_cast<HostValue>(sequence);
}

const mTranslateProgramEnd *new_end(ResultMemory *memory) {
    auto *end = new_result<mTranslateProgramEnd>(memory);
    end->path = keep_result(memory, LastError.file);
    end->line = LastError.line;
    if (LastError.line > 0) end->offset = static_cast<uint64_t>(LastError.offset);
    return end;
}

}  // namespace

void end_program(ProgramRun *run, int32_t status, const std::string &failure) {
    mTranslateProgramResult *result = result_of(run);
    result->status = status;
    std::string line = failure;
    for (char &c : line)
        if (c == '\n' || c == '\r') c = ' ';  // of a file's name
    result->failure = keep_result(memory_of(run), line.c_str());
    result->end = new_end(memory_of(run));
    finish_messages(run, result->failure);
    result->tree = result->values = nullptr;
    result->tokens = nullptr;
    result->token_count = 0;
    result->needs_library = 0;
    throw ProgramEnd();
}

// Without those that only the arguments of mTranslate need.
static constexpr HostKernelTable host_that(HostValue (*call)(HostValue, HostValue)) {
    return {
        raise,        call,          value_of_text, [](HostValue value) { return value ? 1 : 0; },
        nullptr,      nullptr,       text_of_value, nullptr,
        new_sequence, value_of_text, nullptr};
}

const HostKernelTable ProgramHost = host_that(call_host_function);
const HostKernelTable SilentHost = host_that(nullptr);
