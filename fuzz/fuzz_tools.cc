/* The entry for tools, with functions that answer oddly: files that are absent, broken or cut, that
 * have any bytes, or are other files than were asked for; paths that lead anywhere; texts and kinds
 * of every sort. The first bytes of the input choose; a byte 255 begins the next file. What a
 * result tells lies in its sources and in its text, and a second call with the same answers gives
 * the same. */
#include <mtranslate_program.h>

#include <algorithm>
#include <cstring>
#include <map>
#include <memory>
#include <vector>

#include "fuzz/input.h"

using namespace mtranslate;

namespace {

constexpr std::size_t CHOICES = 24;
constexpr const char *NAMES[] = {"main.m", "a.m",         "b.m",    "c.m",    "private/d.m",
                                 "+p/e.m", "@f/method.m", "@f/f.m", "sub/g.m"};

constexpr const char *ODD_PATHS[] = {"",         "/", ".m",     "sub/", "@/a.m",  "+/b.m",  "@f/.m",
                                     "private/", "a", "+p/@/m", "..",   "\xff.m", "@f/@g.m"};

struct Caller {
    Choices choices;
    std::map<std::string, std::string> files;
    std::map<std::string, std::string> remembered = {};
    std::unique_ptr<std::string> given = nullptr; /* valid until the next answer */
    bool has_given_long = false;
    bool is_classic = false;

    const char *give(std::string text) {
        given = std::make_unique<std::string>(std::move(text));
        given->shrink_to_fit();
        return given->c_str();
    }
    const std::string &any_file() {
        const std::string name = NAMES[choices.next() % std::size(NAMES)];
        return files.contains(name) ? files[name] : files["main.m"];
    }
};

Caller *caller_of(void *context) { return static_cast<Caller *>(context); }

int32_t read(void *context, const char *name, const char **text, size_t *length) {
    Caller *caller = caller_of(context);
    const unsigned how = caller->choices.next();
    if (how % 16 == 1) return MTRANSLATE_FILE_FAILED;
    if (how % 16 == 2) return static_cast<int32_t>(caller->choices.next()) - 128;
    const auto found = caller->files.find(name);
    const bool is_there = found != caller->files.end();
    if (!is_there && how % 16 != 3) return MTRANSLATE_FILE_ABSENT;
    std::string given = is_there && how % 16 != 4 ? found->second : caller->any_file();
    if (how % 16 == 5) given.resize(std::min<std::size_t>(given.size(), caller->choices.next()));
    *length = given.size();
    *text = given.empty() && how > 128 ? nullptr : caller->give(std::move(given));
    return MTRANSLATE_FILE_TEXT;
}

/* Long once in a run: each that is said makes the text longer. */
const char *give_long(Caller *caller) {
    const bool is_first = !caller->has_given_long;
    caller->has_given_long = true;
    return caller->give(std::string(is_first ? 5000 : 50, '('));
}

const char *answer(void *context, const mTranslateProgramQuestion *question) {
    Caller *caller = caller_of(context);
    const bool may_lack_name = question->kind == MTRANSLATE_QUESTION_CALL || caller->is_classic;
    check(may_lack_name || *question->name, "a question of no name");  // classic's @ alone
    std::string text = question->name;
    for (size_t i = 0; i < question->argument_count; i++)
        text += std::string(", ") + question->arguments[i];
    switch (caller->choices.next() % 12) {
        case 0: return caller->give("");
        case 1: return caller->give("g(" + text + ")");
        case 2: return caller->give("\n\"`(#" + text);
        case 3: return give_long(caller);
        case 4: return caller->give(caller->any_file());
        case 5: return caller->give("\x1b\xff%1%s" + text);
        default: return nullptr;
    }
}

int32_t allow(void *context, const mTranslateProgramFile *file) {
    check(file->path && file->name && !file->text, "a file without a name");
    return static_cast<int32_t>(caller_of(context)->choices.next() % 8);
}

const char *find(void *context, const mTranslateProgramSearch *search) {
    Caller *caller = caller_of(context);
    const unsigned how = caller->choices.next();
    if (how % 8 == 1) return caller->give(NAMES[how / 8 % std::size(NAMES)]);
    if (how % 8 == 2) return caller->give(std::string("./sub/../") + search->name + ".m");
    if (how % 8 == 3) return caller->give("/dev/null");
    if (how % 8 == 4) return caller->give(search->caller ? search->caller : "");
    if (how % 8 == 6) return caller->give(ODD_PATHS[how / 8 % std::size(ODD_PATHS)]);
    const std::string name = search->name + std::string(".m");
    return how % 2 == 0 && caller->files.contains(name) ? caller->give(name) : nullptr;
}

int32_t result_kind(void *context, const char *name) {
    check(*name != '\0', "a question without a name");
    return static_cast<int32_t>(caller_of(context)->choices.next() % 12) - 2;
}

void remember(void *context, const char *path, const char *results) {
    check(*path && *results, "nothing to remember");
    caller_of(context)->remembered[path] = results;
}

/* That text, cut, of another file, or any text. */
const char *recall(void *context, const char *path) {
    Caller *caller = caller_of(context);
    const unsigned how = caller->choices.next();
    if (how % 8 == 1) return caller->give(caller->any_file());
    if (how % 8 == 2) return caller->give("");
    const auto found = how % 8 == 3 ? caller->remembered.begin() : caller->remembered.find(path);
    if (found == caller->remembered.end()) return nullptr;
    return caller->give(how % 8 == 4 ? found->second.substr(0, how / 8) : found->second);
}

/* Where a byte of a text is: lines end by LF, CR or both. */
struct Place {
    uint32_t line = 1;
    uint32_t column = 1;
};
/* The offsets at which the lines of a text begin. */
std::vector<uint32_t> line_starts(std::string_view text) {
    std::vector<uint32_t> starts = {0};
    for (uint32_t at = 0; at < text.size(); ++at) {
        const bool is_pair = text[at] == '\r' && at + 1 < text.size() && text[at + 1] == '\n';
        if (!is_pair && (text[at] == '\n' || text[at] == '\r')) starts.push_back(at + 1);
    }
    return starts;
}

struct Checked {
    const mTranslateProgramResult &result;
    std::string own; /* the name of the run's own source, and its text where it is known */
    std::string_view own_text;
    bool knows_text;
    std::vector<uint32_t> lines = {}; /* of own_text, where they begin */

    void place(const mTranslateProgramRange *range) const {
        check(range && range->begin <= range->end && range->line >= 1 && range->column >= 1 &&
                  range->line <= range->end_line,
              "a place that is none");
        const bool is_own = range->file ? range->file == own : own.empty();
        if (!is_own || !knows_text) return;
        check(range->end <= own_text.size(), "a place outside of the source");
        const auto line = std::ranges::upper_bound(lines, range->begin) - lines.begin();
        const Place begin = {static_cast<uint32_t>(line), range->begin - lines[line - 1] + 1};
        check(begin.line == range->line && begin.column == range->column, "another place",
              std::to_string(range->begin) + " is " + std::to_string(begin.line) + ':' +
                  std::to_string(begin.column) + " and not " + std::to_string(range->line) + ':' +
                  std::to_string(range->column));
    }
    static void index(int32_t at, size_t count) {
        check(at >= -1 && at < static_cast<int32_t>(count), "no such part");
    }
};

void check_messages(const Checked &all) {
    for (size_t i = 0; i < all.result.message_count; i++) {
        const mTranslateProgramMessage &message = *all.result.messages[i];
        check(*message.text && !std::strpbrk(message.text, "\n"), "a message that is no line",
              message.text);
        check((*message.code != '\0') == (message.kind != nullptr), "a message of no kind");
        if (message.kind) {
            check(message.kind->operand_count == message.operand_count, "other operands");
            all.place(message.place);
        }
        if (message.source_line)
            check(message.source_line_length == std::strlen(message.source_line) ||
                      std::memchr(message.source_line, 0, message.source_line_length),
                  "no line");
    }
}

void check_pieces(const Checked &all) {
    const auto lines = static_cast<uint32_t>(
        std::count(all.result.text, all.result.text + all.result.text_length, '\n') + 1);
    uint32_t first = 1;
    for (size_t i = 0; i < all.result.piece_count; i++) {
        const mTranslateProgramPiece &piece = *all.result.pieces[i];
        all.place(piece.place);
        check(piece.first_line >= first && piece.last_line >= piece.first_line &&
                  piece.last_line <= lines,
              "a piece outside of the text");
        first = piece.first_line;
    }
}

void check_outline(const Checked &all) {
    const mTranslateProgramResult &result = all.result;
    for (size_t i = 0; i < result.function_count; i++) {
        all.place(result.functions[i]->place);
        all.index(result.functions[i]->outer, i);
    }
    for (size_t i = 0; i < result.statement_count; i++) {
        all.place(result.statements[i]->place);
        all.index(result.statements[i]->outer, i);
    }
    uint32_t before = 0;
    for (size_t i = 0; i < result.call_count; i++) {
        const mTranslateProgramCall &call = *result.calls[i];
        all.place(call.place);
        all.index(call.function, result.function_count);
        all.index(call.statement, result.statement_count);
        check(call.place->begin >= before, "calls in no order");
        before = call.place->begin;
    }
    for (size_t i = 0; i < result.comment_count; i++) all.place(result.comments[i]->place);
}

void check_tokens(const Checked &all) {
    uint32_t end = 0;
    for (size_t i = 0; i < all.result.token_count; i++) {
        const mTranslateProgramToken &token = *all.result.tokens[i];
        all.place(token.place);
        check(token.place->begin >= end && token.place->end > token.place->begin, "tokens overlap");
        end = token.place->end;
    }
}

void check_names(const Checked &all) {
    for (size_t i = 0; i < all.result.name_count; i++) {
        const mTranslateProgramName &name = *all.result.names[i];
        all.index(name.function, all.result.function_count);
        if (name.definition) all.place(name.definition);
        check(*name.text && name.use_count > 0, "a name that is not used", name.text);
        for (size_t use = 0; use < name.use_count; use++) all.place(name.uses[use]);
    }
}

void check_statistics(const Checked &all) {
    const mTranslateProgramStatistics *counts = all.result.statistics;
    if (!counts) return;
    check(counts->statements == all.result.statement_count, "other statements");
    check(counts->without_message <= counts->statements, "too many without message");
    check(counts->comments == all.result.comment_count, "other comments");
    check(counts->comments_kept <= counts->comments, "too many comments");
    if (all.knows_text) check(counts->bytes == all.own_text.size(), "other bytes");
}

void check_result(const mTranslateProgramRequest &request, const mTranslateProgramResult &result) {
    const bool is_done = result.status == MTRANSLATE_PROGRAM_DONE;
    check(is_done || (result.status >= MTRANSLATE_PROGRAM_STOPPED &&
                      result.status <= MTRANSLATE_PROGRAM_TOO_LARGE),
          "a status that cannot be");
    check(is_done == !result.failure && is_done == !result.end, "a failure of nothing");
    check(is_done || result.text_length == 0, "a text of nothing");
    const bool has_text =
        (request.flags & MTRANSLATE_TEXTS) != 0 && result.file_count > 0 && result.files[0]->text;
    Checked all{result, request.file && result.file_count > 0 ? result.files[0]->name : "",
                request.command ? request.command : "", request.command || has_text};
    if (has_text && request.file)
        all.own_text = {result.files[0]->text, result.files[0]->text_length};
    all.lines = line_starts(all.own_text);
    check_messages(all);
    if (!is_done) return;
    check_pieces(all);
    check_outline(all);
    check_tokens(all);
    check_names(all);
    check_statistics(all);
}

using Result =
    std::unique_ptr<const mTranslateProgramResult, void (*)(const mTranslateProgramResult *)>;

Result run(mTranslateProgramRequest request, Caller caller) {
    request.context = &caller;
    caller.is_classic = request.language && std::string(request.language) == "classic";
    return {mTranslateProgram(&request), mTranslateProgramRelease};
}

mTranslateProgramRequest request_of(Choices &choices, const std::string &command) {
    static const char *const languages[] = {"matlab", "octave", "classic", nullptr};
    static const char *const folders[] = {"sub", ".", "", "/dev/shm/nowhere"};
    mTranslateProgramRequest request{};
    request.size = sizeof request;
    const unsigned which = choices.next();
    const bool is_odd = which % 16 == 1;
    const char *file = is_odd ? ODD_PATHS[which / 16 % std::size(ODD_PATHS)] : "main.m";
    (which % 4 == 0 ? request.command : request.file) = which % 4 == 0 ? command.c_str() : file;
    request.language = languages[choices.next() / 3 % 4];
    request.flags = choices.below(MTRANSLATE_TOKENS * 2) & ~MTRANSLATE_COUNTS_ON;
    request.folders = folders;
    request.folder_count = choices.next() % 5;
    request.max_memory = choices.next() % 4 == 0 ? 1 + choices.next() % 8 : 0;
    if (choices.next() % 8 != 0) request.read = read;
    if (choices.next() % 4 != 0) request.answer = answer;
    if (choices.next() % 4 == 0) request.allow = allow;
    if (choices.next() % 4 == 0) request.find = find;
    if (choices.next() % 4 != 0) request.result_kind = result_kind;
    if (request.find) request.remember = remember;
    if (request.find) request.recall = recall;
    return request;
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const unsigned char *data, std::size_t size) {
    if (size < CHOICES) return 0;
    const std::string_view text(reinterpret_cast<const char *>(data) + CHOICES, size - CHOICES);
    const std::vector<std::string> files = parts_of(text, std::size(NAMES));
    Choices choices(data, CHOICES);
    const mTranslateProgramRequest request = request_of(choices, files[0]);
    std::map<std::string, std::string> named;
    for (size_t i = 0; i < files.size(); i++) named[NAMES[i]] = files[i];
    const Result first = run(request, {choices, named});
    check_result(request, *first);
    const Result second = run(request, {choices, named});
    check(std::string(first->text) == second->text && first->status == second->status &&
              first->message_count == second->message_count,
          "the second call differs");
    return 0;
}
