// The entry for tools.
#include <mtranslate_program.h>

#include <atomic>
#include <new>

#include "driver/entry.h"
#include "driver/front_end.h"
#include "driver/program/program_details.h"
#include "driver/program/program_request.h"
#include "driver/program/program_run.h"
#include "driver/run.h"
#include "emit/switch_writer.h"
#include "lexer/given_files.h"
#include "lower/program/program_files.h"
#include "run/run_end.h"
#include "run/run_state.h"
#include "support/budget.h"
#include "support/long_string.h"
#include "syntax/print_tree.h"
#include "syntax/tree/result_kinds.h"

namespace {

constexpr mTranslateProgramResult without_run(int32_t status, const char *failure) {
    mTranslateProgramResult result = {};
    result.size = sizeof result;
    result.status = status;
    result.failure = failure;
    result.text = "";
    return result;
}

// Answered where there is nothing to release.
constexpr mTranslateProgramResult REFUSED =
    without_run(MTRANSLATE_PROGRAM_REFUSED, "a translation is already running");
constexpr mTranslateProgramResult NO_MEMORY =
    without_run(MTRANSLATE_PROGRAM_NO_MEMORY, OUT_OF_MEMORY.message);

// Calls of a program that go on. The turn of a run (run/run_turn.h) is not enough: what a call does
// before and after its run is in nobody's way but another program's.
std::atomic_flag IsUnderWay;

OwnedResult *new_owned_result() {
    ResultMemory memory = {};
    auto *owned = static_cast<OwnedResult *>(take_result(&memory, sizeof(OwnedResult)));
    owned->memory = memory;
    owned->result.size = sizeof(mTranslateProgramResult);
    owned->result.text = "";
    return owned;
}

// The run tells of an observer's trouble when it has ended: none may end it. After that nothing is
// noted: what has been is not whole.
template <typename Work>
void observe(void *context, Work work) {
    ProgramRun *run = static_cast<ProgramRun *>(context);
    if (run->lacks_memory) return;
    try {
        work(run);
    } catch (...) {
        run->lacks_memory = true;
    }
}

void note_message(void *context, const Message *message) {
    observe(context, [=](ProgramRun *run) { run->messages.push_back(message); });
}

// May end the run.
void note_file(void *context, const char *path, const struct stat *status) {
    note_program_file(static_cast<ProgramRun *>(context), path, status);
}

void note_text(void *context, const char *path, const char *text, size_t length) {
    observe(context, [=](ProgramRun *run) { note_program_text(run, path, text, length); });
}

// May end the run, too.
FileFinding find_file(void *context, const char *, const char *name, const char **path) {
    FileFinding finding = NOT_FOUND;
    observe(context, [&](ProgramRun *run) { finding = find_program_file(run, name, path); });
    ProgramRun *run = static_cast<ProgramRun *>(context);
    if (!run->unread.empty()) end_program(run, MTRANSLATE_PROGRAM_UNREADABLE, run->unread);
    return finding;
}

// What it tells depends on the file as if that had been read.
const char *recall(void *context, const char *path) {
    const char *results = nullptr;
    observe(context,
            [&](ProgramRun *run) { results = run->request.recall(run->request.context, path); });
    PathState state;
    if (results && look_at(path, &state) == 0)
        note_program_file(static_cast<ProgramRun *>(context), path,
                          state.text ? nullptr : &state.status);
    return results;
}

void remember(void *context, const char *path, const char *results) {
    observe(context,
            [=](ProgramRun *run) { run->request.remember(run->request.context, path, results); });
}

const char *find_method(void *context, const char *class_name, const char *method) {
    const char *path = nullptr;
    observe(context, [&](ProgramRun *run) { path = find_program_method(run, class_name, method); });
    return path;
}

ResultKind find_result_kind(void *context, const char *name) {
    int32_t kind = RESULT_UNKNOWN;
    observe(context,
            [&](ProgramRun *run) { kind = run->request.result_kind(run->request.context, name); });
    bool is_known = kind >= 0 && kind < RESULT_KINDS;
    return is_known ? static_cast<ResultKind>(kind) : RESULT_UNKNOWN;
}

void note_library(void *context) {
    result_of(static_cast<ProgramRun *>(context))->needs_library = 1;
}

GivenAnswer give_file(void *context, const char *path, const char **text, size_t *length) {
    GivenAnswer answer = IS_BROKEN;
    observe(context, [&](ProgramRun *run) {
        const GivenText *given = find_given(&run->request, &run->texts, path);
        *text = given->answer == IS_GIVEN ? given->text.data() : nullptr;
        *length = given->text.size();
        answer = given->answer;
    });
    return answer;
}

const char *give_in_folder(void *context, const char *folder, size_t *cursor) {
    const char *name = nullptr;
    observe(context, [&](ProgramRun *run) {
        name = next_given(&run->texts, &run->folders, folder, cursor);
    });
    return name;
}

void note_piece(void *context, const Node *node, PieceEnd end, const char *target) {
    observe(context, [=](ProgramRun *run) { note_program_piece(run, node, end, target); });
}

void note_lines(void *context, const Origin *origin, uint32_t first, uint32_t count) {
    observe(context, [=](ProgramRun *run) { note_program_lines(run, origin, first, count); });
}

void note_tree(void *context, const Node *tree) {
    LongString text = print_tree(NewLongString(), tree);
    observe(context,
            [=](ProgramRun *run) { result_of(run)->tree = keep_result(memory_of(run), text); });
}

void note_tokens(void *context, const Node *tree) {
    observe(context, [=](ProgramRun *run) { find_commands(run, tree); });
    note_program_tokens(static_cast<ProgramRun *>(context));
    observe(context, finish_tokens);
}

void note_source(void *context, const Node *tree) {
    ProgramRun *run = static_cast<ProgramRun *>(context);
    if (wants(run, MTRANSLATE_TOKENS)) note_tokens(context, tree);
    if (wants(run, MTRANSLATE_TREE)) note_tree(context, tree);
}

void note_values(void *context, const Node *tree) {
    LongString text = print_tree_of_values(NewLongString(), tree);
    observe(context,
            [=](ProgramRun *run) { result_of(run)->values = keep_result(memory_of(run), text); });
}

void note_program(void *context, const SourceFile *file) {
    if (wants(static_cast<ProgramRun *>(context), MTRANSLATE_VALUES))
        note_values(context, file->tree);
    observe(context, [=](ProgramRun *run) { finish_details(run, file); });
}

void set_options(const mTranslateProgramRequest *request) {
    AddTranslator = (request->flags & MTRANSLATE_WITHOUT_TRANSLATOR) == 0;
    Displays = (request->flags & MTRANSLATE_DISPLAYS) != 0;
    KeepGoing = 1;
    UsedFrontEnd = find_front_end(request->language ? request->language : "matlab");
    if (request->max_memory > 0) set_budget(request->max_memory);
    for (size_t i = request->folder_count; i-- > 0;)
        add_search_directory(request->folders[i], strlen(request->folders[i]));
}

// What a tool gets depends on its request alone, unless it wants to count its switch variables on,
// as hosts do.
void translate_anew(const ProgramRun *run, const RunRequest *wanted) {
    if (wants(run, MTRANSLATE_COUNTS_ON)) {
        translate_request(wanted);
        return;
    }
    int32_t counted = SwitchCounter;
    SwitchCounter = 0;
    try {
        translate_request(wanted);
    } catch (...) {
        SwitchCounter = counted;
        throw;
    }
    SwitchCounter = counted;
}

HostValue translate_program(HostValue value) {
    begin_run();
    ProgramRun *run = reinterpret_cast<ProgramRun *>(value);
    const mTranslateProgramRequest *request = &run->request;
    set_options(request);
    const char *source = request->file ? request->file : request->command;
    RunRequest wanted = {request->file ? "file" : "command", source,
                         reinterpret_cast<HostValue>(source), request->folders != nullptr, 0};
    translate_anew(run, &wanted);
    mTranslateProgramResult *result = result_of(run);
    result->text_length = static_cast<size_t>(LengthString(OutputText));
    result->text = keep_result(memory_of(run), OutputText, result->text_length);
    finish_messages(run, nullptr);
    return 1;
}

// False where another run is under way.
bool translate(ProgramRun *run) {
    Observers observers = observers_of(run);
    HostValue value = reinterpret_cast<HostValue>(run);
    const HostKernelTable *host = run->request.answer ? &ProgramHost : &SilentHost;
    try {
        return run_in_turn(host, &observers, translate_program, &value);
    } catch (const ProgramEnd &) {
        mTranslateRelease();
        return true;
    } catch (...) {
        mTranslateRelease();
        throw;
    }
}

void set_invalid(ProgramRun *run, const char *fault) {
    result_of(run)->status = MTRANSLATE_PROGRAM_INVALID;
    result_of(run)->failure = fault;
}

// Null where there is no memory for the result.
const mTranslateProgramResult *run_program(ProgramRun *run,
                                           const mTranslateProgramRequest *request) {
    run->owned = new_owned_result();
    const char *fault = read_request(request, &run->request);
    if (!fault) fault = enter_sources(&run->request, &run->texts);
    mTranslateProgramResult *result = result_of(run);
    if (fault)
        set_invalid(run, fault);
    else if (!translate(run))
        return &REFUSED;
    result->files =
        list_result<mTranslateProgramFile>(memory_of(run), {run->files.begin(), run->files.end()});
    result->file_count = run->files.size();
    return run->lacks_memory ? nullptr : result;
}

// Whatever is thrown, memory lacks: the caller's functions do not throw.
const mTranslateProgramResult *try_program(const mTranslateProgramRequest *request) {
    ProgramRun run = {};
    const mTranslateProgramResult *result = nullptr;
    try {
        result = run_program(&run, request);
    } catch (...) {
        result = nullptr;
    }
    if (!result || result->status == MTRANSLATE_PROGRAM_NO_MEMORY) result = &NO_MEMORY;
    bool is_own = run.owned && result == result_of(&run);
    if (run.owned && !is_own) mTranslateProgramRelease(result_of(&run));
    return result;
}

}  // namespace

Observers observers_of(ProgramRun *run) {
    const mTranslateProgramRequest *request = &run->request;
    Observers observers = {};
    observers.context = run;
    observers.opens = note_file;
    observers.message = note_message;
    observers.without_disk = wants(run, MTRANSLATE_WITHOUT_DISK);
    bool gives_files = request->read || request->source_count > 0 || observers.without_disk;
    if (gives_files) observers.given_file = give_file;
    if (gives_files) observers.given_in_folder = give_in_folder;
    if (request->find) observers.find_file = find_file;
    if (request->find && !wants(run, MTRANSLATE_WITHOUT_METHODS))
        observers.find_method = find_method;
    if (request->find && request->recall) observers.recall = recall;
    if (request->find && request->remember) observers.remember = remember;
    if (request->result_kind) observers.result_kind = find_result_kind;
    if (wants(run, MTRANSLATE_TEXTS)) observers.text = note_text;
    if (wants(run, MTRANSLATE_TREE | MTRANSLATE_TOKENS)) observers.tree = note_source;
    if (wants(run, MTRANSLATE_OUTLINE)) observers.piece = note_piece;
    if (wants(run, MTRANSLATE_PIECES)) observers.lines = note_lines;
    if (wants(run, MTRANSLATE_VALUES | MTRANSLATE_OUTLINE | MTRANSLATE_PIECES | MTRANSLATE_DETAILS))
        observers.program = note_program;
    if (wants(run, MTRANSLATE_LIBRARY_APART)) observers.library_call = note_library;
    observers.holds_library = wants(run, MTRANSLATE_WHOLE_LIBRARY);
    observers.only_reads = wants(run, MTRANSLATE_ONLY_READ);
    return observers;
}

const mTranslateProgramResult *mTranslateProgram(const mTranslateProgramRequest *request) {
    if (IsUnderWay.test_and_set()) return &REFUSED;
    const mTranslateProgramResult *result = try_program(request);
    IsUnderWay.clear();
    return result;
}

void mTranslateProgramRelease(const mTranslateProgramResult *result) {
    if (!result || result == &REFUSED || result == &NO_MEMORY) return;
    ResultMemory memory = reinterpret_cast<const OwnedResult *>(result)->memory;
    release_result(&memory);
}
