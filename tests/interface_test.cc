/* The interface for tools: what a result tells, files that are not on the disk, sizes of structs,
 * and calls that are refused. */
#include <gtest/gtest.h>
#include <mtranslate_program.h>

#include <algorithm>
#include <cstring>
#include <filesystem>
#include <map>
#include <memory>
#include <set>
#include <sstream>
#include <thread>
#include <vector>

#include "tests/translation.h"

namespace mtranslate {

namespace {

using Result =
    std::unique_ptr<const mTranslateProgramResult, void (*)(const mTranslateProgramResult *)>;

Result translated(const mTranslateProgramRequest &request) {
    return {mTranslateProgram(&request), mTranslateProgramRelease};
}

std::string text_or(const char *text, const char *otherwise) { return text ? text : otherwise; }

/* Files that a tool has, and what it was asked. */
struct Tool {
    std::map<std::string, std::string> files;
    Texts asked;
    void (*when_asked)() = [] {};
    mTranslateProgramRequest request{};

    explicit Tool(const std::string &table) {
        for (const Row &file : short_rows(table)) files[file.source + ".m"] = file.expected;
        request.size = sizeof request;
        request.file = "main.m";
        request.flags = MTRANSLATE_WITHOUT_DISK;
        request.context = this;
        request.read = read;
        request.answer = answer;
    }
    Tool(const Tool &) = delete;
    Tool &operator=(const Tool &) = delete;

    static int32_t read(void *context, const char *name, const char **text, size_t *length) {
        Tool *tool = static_cast<Tool *>(context);
        tool->when_asked();
        tool->asked.push_back(std::string("read ") + name);
        const auto file = tool->files.find(name);
        if (file == tool->files.end()) return MTRANSLATE_FILE_ABSENT;
        if (file->second == "broken") return MTRANSLATE_FILE_FAILED;
        *text = file->second.data();
        *length = file->second.size();
        return MTRANSLATE_FILE_TEXT;
    }
    static const char *answer(void *context, const mTranslateProgramQuestion *question) {
        Tool *tool = static_cast<Tool *>(context);
        if (question->kind == MTRANSLATE_QUESTION_NAME)
            return std::strcmp(question->name, "rate") == 0 ? "r" : nullptr;
        std::string call = question->name;
        for (size_t i = 0; i < question->argument_count; i++)
            call += std::string(" ") + question->arguments[i];
        tool->asked.push_back(call + " -> " + std::to_string(question->results));
        return std::strcmp(question->name, "flip") == 0 ? "FLIPPED" : nullptr;
    }
};

std::string shown(const mTranslateProgramRange *place) {
    if (!place) return "nowhere";
    const auto end = [](uint32_t line, uint32_t column, uint32_t units) {
        return std::to_string(line) + ":" + std::to_string(column) + "/" + std::to_string(units);
    };
    return text_or(place->file, "command") + " " +
           end(place->line, place->column, place->column_utf16) + "-" +
           end(place->end_line, place->end_column, place->end_column_utf16);
}

std::string shown(const mTranslateProgramMessage &message) {
    std::string text = shown(message.place) + " " + std::to_string(message.severity) + " " +
                       message.code + " [" + text_or(message.source_line, "") + "]";
    if (message.called_from)
        text += std::string(" from ") + message.called_from + ":" +
                std::to_string(message.called_from_line);
    return text;
}

std::string messages_of(const mTranslateProgramResult &result) {
    std::string text;
    for (size_t i = 0; i < result.message_count; i++) text += shown(*result.messages[i]) + "\n";
    return text;
}

struct Program {
    const char *language;
    const char *files;
    const char *text;
    const char *messages;
};

const Program Programs[] = {
    {"matlab", "main => y = f(rate)   f => function y = f(x)\\ny = flip(x);\\nend",
     "f := proc( x )\n  local y;\n  y := FLIPPED;\n  return y;\nend proc;\n\ny := f(r);\n", ""},
    {"matlab", "main => x = 1;\\npart   part => y = x", "x := 1;\ny := copy(x);\n", ""},
    {"classic", "main => y = f(x)   f => function y = f(x)\\ny = g(x);",
     "f := proc( x )\n    local y;\n    y := g(x);\n        return y;\nend proc;\n\ny := f(x);\n",
     ""},
    {"matlab", "main => s = '°😀'; y = nope;\\r\\nf(1)   f => function f(x)\\n% 😀\\n  😀", nullptr,
     "main.m 1:19/16-1:23/20 2 MT401 [s = '°😀'; y = nope;]\n"
     "f.m 3:3/3-3:7/5 0 MT112 [  😀] from main.m:2\n"},
    {"classic", "main => y = f(x)   f => function y = f(x)\\n% é\\ny = = x;", "",
     "f.m 3:5/5-3:5/5 0  [y = = x;]\n"},
    {"matlab", "main => f(1)   f => broken", "", "nowhere 0  []\n"},
};

TEST(Interface, tells_of_files_that_are_not_on_the_disk) {
    for (const Program &program : Programs) {
        SCOPED_TRACE(program.files);
        Tool tool(program.files);
        tool.request.language = program.language;
        const Result result = translated(tool.request);
        if (program.text) {
            EXPECT_EQ(std::string(result->text), program.text);
            EXPECT_EQ(result->text_length, std::strlen(program.text));
        }
        EXPECT_EQ(messages_of(*result), program.messages);
        ASSERT_EQ(result->file_count, program.messages[0] == 'n' ? 1u : 2u);
        EXPECT_EQ(std::string(result->files[0]->name), "main.m");
    }
}

TEST(Interface, asks_once_for_a_file_and_for_every_call) {
    Tool tool("main => y = f(1); z = f(2); [p, q] = g(z)");
    EXPECT_EQ(translated(tool.request)->status, MTRANSLATE_PROGRAM_DONE);
    std::ranges::sort(tool.asked);
    EXPECT_EQ(tool.asked, (Texts{"f 1 -> 1", "f 2 -> 1", "g z -> 2", "read f.m", "read g.m",
                                 "read main.m", "read private/f.m", "read private/g.m"}));
}

/* Texts of an array of sources, whose structs the caller knows with one field more. */
struct NewerSource {
    mTranslateProgramSource known;
    uint64_t added;
};

std::vector<NewerSource> sources_of(const Tool &tool) {
    std::vector<NewerSource> sources;
    for (const auto &[name, text] : tool.files)
        sources.push_back({{sizeof(NewerSource), name.c_str(), text.data(), text.size()}, 0});
    return sources;
}

/* Sources of classes, packages and private folders, and a text that is no file of the disk. */
TEST(Interface, finds_sources_in_folders) {
    Tool tool(
        "main => p = point(1); q = move(p); r = geo.area(q); s = own(2); t = far(q)   "
        "@point/point => function p = point(x)\\np.x = x;   "
        "@point/move => function p = move(p)   +geo/area => function a = area(q)\\na = 1;   "
        "private/own => function y = own(x)\\ny = x;   lib/far => function y = far(x)\\ny = x;");
    static const char *const folders[] = {"lib", "."};
    tool.request.folders = folders;
    tool.request.folder_count = 2;
    const std::vector<NewerSource> sources = sources_of(tool);
    tool.request.sources = &sources[0].known;
    tool.request.source_count = sources.size();
    tool.request.read = nullptr;
    const Result result = translated(tool.request);
    EXPECT_EQ(result->file_count, sources.size()) << messages_of(*result);
    for (size_t i = 0; i < result->message_count; i++)
        EXPECT_NE(std::string(result->messages[i]->code), "MT401") << result->messages[i]->text;
}

struct Ending {
    void (*change)(Tool &tool);
    int32_t status;
    const char *failure;
};

mTranslateProgramSource one_source{sizeof one_source, "main.m", "x = 1", 5};

/* Two sources, one of which is wrong. */
template <int FAULT>
void give_sources(Tool &tool) {
    static NewerSource sources[2];
    for (NewerSource &source : sources)
        source = {{sizeof(NewerSource), &source == sources ? "a.m" : "b.m", "x = 1", 5}, 0};
    if (FAULT == 0) sources[0].known.size = 2;
    if (FAULT == 1) sources[1].known.size = sizeof(mTranslateProgramSource);
    if (FAULT == 2) sources[1].added = 1;
    if (FAULT == 3) sources[1].known.name = nullptr;
    if (FAULT == 4) sources[0].known.text = nullptr;
    if (FAULT == 4) sources[0].known.length = 1;
    tool.request.sources = &sources[0].known;
    tool.request.source_count = 2;
}

const Ending Endings[] = {
    {[](Tool &tool) { tool.request.file = "none.m"; }, MTRANSLATE_PROGRAM_UNREADABLE,
     "unable to open none.m: No such file or directory"},
    {[](Tool &tool) { tool.request.file = "no\r\nne.m"; }, MTRANSLATE_PROGRAM_UNREADABLE,
     "unable to open no  ne.m: No such file or directory"},
    {[](Tool &tool) {
         tool.files["main.m"] = "broken";
         tool.request.max_memory = 1U << 20;
     },
     MTRANSLATE_PROGRAM_UNREADABLE, "unable to open main.m: Input/output error"},
    {[](Tool &tool) { tool.files["f.m"] = "broken"; }, MTRANSLATE_PROGRAM_UNREADABLE,
     "unable to open ./f.m: Input/output error"},
    {[](Tool &tool) {
         tool.files["main.m"] = "y = a" + repeated("'", 16000);
         tool.request.language = "classic";
         tool.request.max_memory = 1;
     },
     MTRANSLATE_PROGRAM_TOO_LARGE, "the translation takes more than 1 MB of memory"},
    {[](Tool &tool) {
         tool.files["main.m"] = "y = )";
         tool.request.language = "classic";
     },
     MTRANSLATE_PROGRAM_STOPPED, "syntax error"},
    {[](Tool &tool) { tool.request.size = 0; }, MTRANSLATE_PROGRAM_INVALID,
     "invalid request: it has no size"},
    {[](Tool &tool) { tool.request.command = "x"; }, MTRANSLATE_PROGRAM_INVALID,
     "invalid request: either a command or a file is expected"},
    {[](Tool &tool) { tool.request.flags = 1U << 31; }, MTRANSLATE_PROGRAM_INVALID,
     "invalid request: it has fields that this library does not know"},
    {[](Tool &tool) { tool.request.language = "C"; }, MTRANSLATE_PROGRAM_INVALID,
     "invalid request: the language must be classic, matlab or octave"},
    {[](Tool &tool) { tool.request.max_memory = (1U << 20) + 1; }, MTRANSLATE_PROGRAM_INVALID,
     "invalid request: max_memory must be a number of megabytes"},
    {[](Tool &tool) { tool.request.source_count = 1; }, MTRANSLATE_PROGRAM_INVALID,
     "invalid request: there are no sources"},
    {[](Tool &tool) { tool.request.folder_count = 1; }, MTRANSLATE_PROGRAM_INVALID,
     "invalid request: there are no folders"},
    {[](Tool &tool) {
         static const char *const unnamed[] = {"a", nullptr};
         tool.request.folders = unnamed;
         tool.request.folder_count = 2;
     },
     MTRANSLATE_PROGRAM_INVALID, "invalid request: a folder has no name"},
    {[](Tool &tool) {
         static const mTranslateProgramSource twice[] = {one_source, one_source};
         tool.request.sources = twice;
         tool.request.source_count = 2;
     },
     MTRANSLATE_PROGRAM_INVALID, "invalid request: two sources have the same name"},
    {give_sources<0>, MTRANSLATE_PROGRAM_INVALID, "invalid request: a source has no size"},
    {give_sources<1>, MTRANSLATE_PROGRAM_INVALID,
     "invalid request: the sources have different sizes"},
    {give_sources<2>, MTRANSLATE_PROGRAM_INVALID,
     "invalid request: it has fields that this library does not know"},
    {give_sources<3>, MTRANSLATE_PROGRAM_INVALID, "invalid request: a source has no name"},
    {give_sources<4>, MTRANSLATE_PROGRAM_INVALID, "invalid request: a source has no text"},
};

/* And the next run is as it would be without. */
TEST(Interface, says_in_the_status_what_fails) {
    for (const Ending &ending : Endings) {
        SCOPED_TRACE(ending.failure);
        Tool tool("main => y = f(1)");
        ending.change(tool);
        const Result result = translated(tool.request);
        EXPECT_EQ(result->status, ending.status);
        EXPECT_EQ(text_or(result->failure, "none"), ending.failure);
        EXPECT_EQ(std::string(result->text), "");
        Tool next("main => y = f(1)");
        EXPECT_EQ(std::string(translated(next.request)->text), "y := f(1);\n");
    }
    const Result result(mTranslateProgram(nullptr), mTranslateProgramRelease);
    EXPECT_EQ(result->status, MTRANSLATE_PROGRAM_INVALID);
}

int32_t second_status() {
    Tool tool("main => x = 1");
    return translated(tool.request)->status;
}

Texts refusals;

void ask_again() {
    refusals.push_back(std::to_string(second_status()));
    std::thread([] { refusals.push_back(std::to_string(second_status())); }).join();
    StandInHost host;
    host.leave_errors_by(ErrorExit::Return);
    ValueStore &values = host.values();
    const HostValue arguments[] = {values.string("command"), values.string("x = 1")};
    refusals.push_back(host.run(values.sequence(arguments)) ? "a value" : "null");
    for (const std::string &error : host.take_errors()) refusals.push_back(error);
}

TEST(Interface, refuses_a_second_run) {
    refusals.clear();
    Tool tool("main => x = 1");
    tool.when_asked = ask_again;
    EXPECT_EQ(std::string(translated(tool.request)->text), "x := 1;\n");
    EXPECT_EQ(refusals, (Texts{"6", "6", "null", "a translation is already running"}));
    StandInHost host;
    host.translate_function("f", [](const auto &) { return std::to_string(second_status()); });
    EXPECT_EQ(host.translate("command", "x = f(1)"), "x := 6;\n");
}

/* What a caller knows whose header has fewer fields, or more. */
TEST(Interface, takes_requests_of_every_size) {
    struct Newer {
        mTranslateProgramRequest known;
        uint64_t added;
    };
    Tool tool("main => x = rate");
    Newer newer{tool.request, 0};
    newer.known.size = sizeof newer;
    EXPECT_EQ(std::string(translated(newer.known)->text), "x := r;\n");
    newer.added = 1;
    EXPECT_EQ(translated(newer.known)->status, MTRANSLATE_PROGRAM_INVALID);
    tool.request.size = offsetof(mTranslateProgramRequest, answer);
    EXPECT_EQ(std::string(translated(tool.request)->text), "x := rate();\n");
    EXPECT_EQ(tool.asked.back(), "read rate.m");
}

/* What the host text of "main.m" comes from, and what is in it. */
std::string shown_details(const mTranslateProgramResult &result) {
    std::ostringstream text;
    for (size_t i = 0; i < result.piece_count; i++)
        text << "piece " << result.pieces[i]->kind << " " << result.pieces[i]->first_line << "-"
             << result.pieces[i]->last_line << " " << shown(result.pieces[i]->place) << "\n";
    for (size_t i = 0; i < result.function_count; i++)
        text << "function " << result.functions[i]->name << " in " << result.functions[i]->outer
             << " " << shown(result.functions[i]->place) << "\n";
    for (size_t i = 0; i < result.call_count; i++)
        text << "call " << result.calls[i]->name << " in " << result.calls[i]->function << " "
             << result.calls[i]->end << " " << text_or(result.calls[i]->target, "-") << " "
             << shown(result.calls[i]->place) << "\n";
    for (size_t i = 0; i < result.comment_count; i++)
        text << "comment " << result.comments[i]->is_kept << " " << shown(result.comments[i]->place)
             << "\n";
    if (const mTranslateProgramStatistics *all = result.statistics)
        text << all->lines << " lines, " << all->bytes << " bytes, " << all->statements
             << " statements, " << all->without_message << " without, " << all->comments
             << " comments, " << all->comments_kept << " kept\n";
    return text.str();
}

std::string shown_names(const mTranslateProgramResult &result) {
    std::ostringstream text;
    for (size_t i = 0; i < result.name_count; i++) {
        const mTranslateProgramName &name = *result.names[i];
        text << name.text << " is " << name.kind << " in " << name.function << ":";
        for (size_t use = 0; use < name.use_count; use++)
            text << " " << name.uses[use]->line << ":" << name.uses[use]->column;
        if (name.definition)
            text << ", from " << name.definition->line << ":" << name.definition->column;
        text << "\n";
    }
    return text.str();
}

constexpr const char *DETAILED =
    "main => x = 1; % é😀\\ny = g(x) + sin(x);\\nz = @(t) t + x;\\nf(2)\\nw = nope(x);\\n"
    "@@ % kept\\nfunction r = g(x)\\nglobal n\\nr = inner(x) + n;\\n"
    "function q = inner(p)\\nq = p; r = 2;\\nend\\nend\\n   "
    "f => function f(x)\\ndisp(x)\\n";

constexpr const char *DETAILS = R"(piece 4 1-3 main.m 7:1/1-7:18/18
piece 4 5-6 main.m 10:1/1-10:22/22
piece 0 7-7 main.m 11:1/1-11:6/6
piece 0 8-8 main.m 11:8/8-11:13/13
piece 6 9-9 main.m 10:10/10-10:11/11
piece 2 10-10 main.m 12:1/1-12:4/4
piece 0 12-12 main.m 9:1/1-9:17/17
piece 6 13-13 main.m 7:10/10-7:11/11
piece 2 14-14 main.m 13:1/1-13:4/4
piece 4 16-16 f.m 1:1/1-1:14/14
piece 0 17-17 f.m 2:1/1-2:8/8
piece 2 18-18 f.m 2:8/8-2:8/8
piece 0 20-20 main.m 1:1/1-1:6/6
piece 3 20-20 main.m 1:8/8-1:16/13
piece 0 21-21 main.m 2:1/1-2:18/18
piece 0 22-22 main.m 3:1/1-3:15/15
piece 0 23-23 main.m 4:1/1-4:5/5
piece 0 24-24 main.m 5:1/1-5:12/12
piece 7 25-25 main.m 6:1/1-6:3/3
piece 3 25-25 main.m 6:4/4-6:10/10
function g in -1 main.m 7:1/1-13:4/4
function inner in 0 main.m 10:1/1-12:4/4
call g in -1 0 main.m main.m 2:5/5-2:6/6
call sin in -1 5 - main.m 2:12/12-2:15/15
call f in -1 1 f.m main.m 4:1/1-4:2/2
call nope in -1 5 - main.m 5:5/5-5:9/9
call inner in 0 0 main.m main.m 9:5/5-9:10/10
comment 1 main.m 1:8/8-1:16/13
comment 1 main.m 6:4/4-6:10/10
13 lines, 168 bytes, 10 statements, 7 without, 2 comments, 2 kept
)";

constexpr const char *NAMES = R"(x is 1 in -1: 1:1 2:7 2:16 3:14 5:10, from 1:1
y is 1 in -1: 2:1, from 2:1
g is 0 in -1: 2:5, from 7:14
sin is 0 in -1: 2:12
z is 1 in -1: 3:1, from 3:1
t is 2 in -1: 3:7 3:10, from 3:7
f is 0 in -1: 4:1
w is 1 in -1: 5:1, from 5:1
nope is 0 in -1: 5:5
r is 3 in 0: 7:10 9:1 11:8, from 7:10
x is 2 in 0: 7:16 9:11, from 7:16
n is 4 in 0: 8:8 9:16, from 8:8
inner is 0 in 0: 9:5, from 10:14
q is 3 in 1: 10:10 11:1, from 10:10
p is 2 in 1: 10:20 11:5, from 10:20
)";

TEST(Interface, tells_what_becomes_of_a_source) {
    Tool tool(DETAILED);
    tool.request.flags |= MTRANSLATE_DETAILS | MTRANSLATE_TREE;
    const Result result = translated(tool.request);
    EXPECT_EQ(shown_details(*result), DETAILS);
    EXPECT_EQ(shown_names(*result), NAMES);
    EXPECT_EQ(std::string(result->tree).substr(0, 15), "(file\n  (= x 1)");
    tool.request.flags = MTRANSLATE_WITHOUT_DISK;
    const Result plain = translated(tool.request);
    EXPECT_EQ(std::string(plain->text), result->text);
    EXPECT_EQ(shown_details(*plain) + shown_names(*plain), "");
    EXPECT_EQ(plain->tree, nullptr);
}

/* What a flag changes, and where a run has ended. */
struct Asked {
    uint32_t flags;
    const char *language;
    const char *command;
    const char *expected;
};

std::string shown_answers(const mTranslateProgramResult &result) {
    std::string text = std::string(result.text).substr(0, 16);
    if (result.tree) text += std::string(" tree ") + result.tree;
    if (result.values) text += std::string(" values ") + result.values;
    if (result.needs_library) text += " needs the library";
    for (size_t i = 0; i < result.statement_count; i++) {
        const mTranslateProgramStatement &statement = *result.statements[i];
        text += " " + std::to_string(statement.outer) + (statement.is_read ? "r" : "u") +
                (statement.has_message ? "m" : "") + std::to_string(statement.place->begin);
    }
    for (size_t i = 0; i < result.call_count; i++)
        text += std::string(" ") + result.calls[i]->name + " in " +
                std::to_string(result.calls[i]->statement);
    for (size_t i = 0; i < result.message_count; i++)
        text += std::string(" ") + result.messages[i]->code;
    if (result.end)
        text += " ends at " + std::to_string(result.end->line) + ":" +
                std::to_string(result.end->offset) + " near " +
                std::to_string(result.messages[result.message_count - 1]->place->begin);
    return text;
}

const Asked Answers[] = {
    {MTRANSLATE_TREE | MTRANSLATE_ONLY_READ, "matlab", "y = nope; x = )",
     " tree (file\n  (= y nope);\n  (bad)) MT101"},
    {MTRANSLATE_VALUES, "matlab", "y = 1", "y := 1;\n values (file\n  (= y:? 1))"},
    {MTRANSLATE_LIBRARY_APART, "matlab", "y = sort(1:3)", "y := qxrp_sort(V needs the library"},
    {MTRANSLATE_WHOLE_LIBRARY, "matlab", "", "qxrp_length := p"},
    {MTRANSLATE_OUTLINE, "matlab", "if a\nb(nope)\nend\nx = )",
     "if ArrayTools[Al -1r0 0r5 -1um17 a in 0 b in 1 nope in 1 MT401 MT401 MT401 MT101"},
    {0, "classic", "if x", "  ends at 2:6 near 4"},
};

TEST(Interface, answers_what_flags_ask_for) {
    for (const Asked &asked : Answers) {
        Tool tool("");
        tool.request.file = nullptr;
        tool.request.command = asked.command;
        tool.request.language = asked.language;
        tool.request.flags |= asked.flags;
        EXPECT_EQ(shown_answers(*translated(tool.request)), asked.expected);
    }
}

struct Tokens {
    const char *language;
    const char *command;
    const char *expected; /* kinds, and the bytes of each */
};

const Tokens Listed[] = {
    {"matlab", "x(end).a = [1 -2.5e3]';",
     "0:x 5:( 3:end 5:) 8:.a 4:= 5:[ 1:1 4:- 1:2.5e3 5:] 4:' 6:; "},
    {"matlab", "hold on; y = \"a\"; % c\nif a\n!ls -l\nend",
     "9:hold on 6:; 0:y 4:= 2:\"a\" 6:; 7:% c 3:if 0:a 9:!ls -l 3:end "},
    {"matlab", "x = {1, ... c\n'it''s' %d\n};\neval('hold on')",
     "0:x 4:= 5:{ 1:1 6:, 7:c 2:'it''s' 7:%d 5:} 6:; 0:eval 5:( 2:'hold on' 5:) "},
    {"matlab", "s = 'open\ny = $ + 1\n%{\ntext\n%}\nz = @(t) t.^2",
     "0:s 4:= 10:'open 0:y 4:= 10:$ 7:text 0:z 4:= 4:@ 5:( 0:t 5:) 0:t 4:.^ 1:2 "},
    {"octave", "x += 1; # c\nendif", "0:x 4:+= 1:1 6:; 7:# c 3:endif "},
    {"classic", "x = 1", ""},
};

TEST(Interface, lists_tokens) {
    for (const Tokens &listed : Listed) {
        for (const int flags : {0, int{MTRANSLATE_ONLY_READ}}) {
            Tool tool("");
            tool.request.file = nullptr;
            tool.request.command = listed.command;
            tool.request.language = listed.language;
            tool.request.flags |= MTRANSLATE_TOKENS | static_cast<uint32_t>(flags);
            const Result result = translated(tool.request);
            std::string shown;
            for (size_t i = 0; i < result->token_count; i++) {
                const mTranslateProgramToken &token = *result->tokens[i];
                const std::string_view text = listed.command;
                shown += std::to_string(token.kind) + ':';
                shown += text.substr(token.place->begin, token.place->end - token.place->begin);
                shown += ' ';
            }
            EXPECT_EQ(shown, listed.expected);
        }
    }
}

TEST(Interface, counts_on_where_it_is_asked_to) {
    Tool tool("main => switch x\\ncase 1\\ny = 1;\\nend");
    tool.request.language = "classic";
    const std::string first = translated(tool.request)->text;
    EXPECT_EQ(std::string(translated(tool.request)->text), first);
    tool.request.flags |= MTRANSLATE_COUNTS_ON;
    translated(tool.request);
    EXPECT_NE(std::string(translated(tool.request)->text), first);
}

/* A caller that knows all files, and what results are. */
const char *find_file(void *context, const mTranslateProgramSearch *search) {
    Tool *tool = static_cast<Tool *>(context);
    const std::string name = search->name;
    static std::string path;  // valid until the next question
    tool->when_asked = [] { path = "gone"; };
    tool->asked.push_back("find " + name + " of " + text_or(search->class_name, "any") + " for " +
                          text_or(search->caller, "a command"));
    if (search->kind == MTRANSLATE_SEARCH_METHOD) return nullptr;
    path = "lib/./" + name + ".m";
    return name == "part" || name == "f" ? path.c_str() : nullptr;
}

TEST(Interface, takes_what_the_caller_knows) {
    Tool tool(
        "main => y = f(1);\\npart\\nz = g(1)*2;   lib/f => function y = f(x)\\ny = x;   "
        "lib/part => p = '😀'; é = 1;");
    tool.request.flags |= MTRANSLATE_DETAILS | MTRANSLATE_TEXTS;
    tool.request.find = find_file;
    tool.request.result_kind = [](void *, const char *name) {
        const bool is_g = std::strcmp(name, "g") == 0;
        return int32_t{is_g ? MTRANSLATE_RESULT_NUMBER : 99};
    };
    const Result result = translated(tool.request);
    EXPECT_EQ(std::string(result->text),
              "y := f(1);\np := \"😀\";\n# not translated (MT112 invalid-character): é = 1;\n"
              "z := g(1)*2;\n");
    const mTranslateProgramRange *place = result->messages[result->message_count - 1]->place;
    EXPECT_EQ(place->column_utf16, 11u);
    EXPECT_EQ(place->column_characters, 10u);
    std::set<std::string> asked(tool.asked.begin(), tool.asked.end());
    for (const char *question : {"find f of any for main.m", "find f of f for main.m",
                                 "find part of any for main.m", "f 1 -> 1", "g 1 -> 1"})
        EXPECT_TRUE(asked.contains(question)) << question;
    ASSERT_EQ(result->file_count, 3u);
    EXPECT_EQ(std::string(result->files[1]->name), "lib/part.m");
    EXPECT_EQ(std::string(result->files[1]->path), "lib/./part.m");
    EXPECT_EQ(std::string(result->files[1]->text), tool.files["lib/part.m"]);
    EXPECT_EQ(std::string(result->files[2]->name), "lib/f.m");
    EXPECT_EQ(std::string(result->calls[0]->target), "lib/./f.m");
}

TEST(Interface, asks_for_no_methods_where_there_are_none) {
    Tool tool("main => y = f(1) + 2;   lib/f => function y = f(x)\ny = x;");
    tool.request.find = find_file;
    tool.request.flags |= MTRANSLATE_WITHOUT_METHODS;
    translated(tool.request);
    std::erase_if(tool.asked, [](const std::string &asked) { return !asked.starts_with("find "); });
    EXPECT_EQ(tool.asked, Texts{"find f of any for main.m"});
}

/* What is recalled is what reading the file tells, and the file counts as read; what is damaged
 * spoils nothing but that. */
TEST(Interface, recalls_what_a_run_has_found_out) {
    static std::map<std::string, std::string> known;
    known.clear();
    Tool tool(
        "main => [c, s, d] = f(1); x = c(2); y = s.b(1); z = d(3); f({1});   lib/f => "
        "function [c, s, d, varargout] = f(v)\\nc = {1, 2}; s.a = v(1); s.b = {s.a}; d = {4}; "
        "varargout{1} = 3;");
    tool.request.find = find_file;
    tool.request.remember = [](void *, const char *path, const char *results) {
        known[path] = results;
    };
    const Result first = translated(tool.request);
    ASSERT_EQ(known.size(), 1u);
    EXPECT_NE(std::string(first->text).find("x := c(2..2);"), std::string::npos) << first->text;
    EXPECT_NE(messages_of(*first).find("MT320"), std::string::npos)
        << first->text << messages_of(*first);
    tool.request.recall = [](void *, const char *path) {
        const auto at = known.find(path);
        return at == known.end() ? nullptr : at->second.c_str();
    };
    const std::string whole = known.begin()->second;
    for (size_t length = whole.size();; length /= 2) {
        SCOPED_TRACE(length);
        known.begin()->second = whole.substr(0, length);
        const Result next = translated(tool.request);
        EXPECT_EQ(next->file_count, first->file_count);
        if (length == whole.size()) {
            EXPECT_EQ(std::string(next->text), first->text);
            EXPECT_EQ(messages_of(*next), messages_of(*first));
        }
        if (length == 0) break;
    }
    known.begin()->second = "1 x 99999 5 4294967295 7 -3 y";
    EXPECT_EQ(translated(tool.request)->status, MTRANSLATE_PROGRAM_DONE);
}

/* What is no UTF-8 counts as so many bytes: overlong forms, surrogates, and what is beyond
 * U+10FFFF. */
TEST(Interface, counts_characters_of_utf_8_alone) {
    const struct {
        const char *bytes;
        unsigned characters, units;
    } rows[] = {
        {"\xE0\xA0\x80", 1, 1},     {"\xE0\x9F\x80", 3, 3},     {"\xED\x9F\xBF", 1, 1},
        {"\xED\xA0\x80", 3, 3},     {"\xF0\x90\x80\x80", 1, 2}, {"\xF0\x8F\x80\x80", 4, 4},
        {"\xF4\x8F\xBF\xBF", 1, 2}, {"\xF4\x90\x80\x80", 4, 4}, {"\xC1\x80\xF5", 3, 3},
    };
    for (const auto &row : rows) {
        const std::string source = std::string("p = '") + row.bytes + "'; $";
        mTranslateProgramRequest request = {};
        request.size = sizeof request;
        request.command = source.c_str();
        const Result result = translated(request);
        ASSERT_EQ(result->message_count, 1u) << source;
        const mTranslateProgramRange *place = result->messages[0]->place;
        EXPECT_EQ(place->column_characters, 9 + row.characters) << source;
        EXPECT_EQ(place->column_utf16, 9 + row.units) << source;
    }
}

TEST(Interface, takes_no_path_that_leads_to_no_function) {
    static const char *path;
    Tool tool("main => x = 1; y = f(x); f");
    tool.request.find = [](void *, const mTranslateProgramSearch *) { return path; };
    for (const char *answered : {"", "/", "lib/", "f.m", "+p/f.m", "@/f.m", "@f/"}) {
        path = answered;
        const Result result = translated(tool.request);
        EXPECT_EQ(std::string(result->text), "x := 1;\ny := f(x);\nf();\n") << answered;
    }
}

/* Which of its functions are scripts cannot be known then. */
TEST(Interface, ends_where_a_found_file_cannot_be_read) {
    const SourceFiles files("main => f");
    const std::string main = files.path("main.m");
    mTranslateProgramRequest request{};
    request.size = sizeof request;
    request.file = main.c_str();
    request.find = [](void *, const mTranslateProgramSearch *) { return "/proc/self/mem"; };
    const Result result = translated(request);
    EXPECT_EQ(result->status, MTRANSLATE_PROGRAM_UNREADABLE);
    EXPECT_EQ(std::string(result->failure), "unable to open /proc/self/mem: Input/output error");
}

TEST(Interface, asks_before_it_opens_a_file_of_the_disk) {
    const SourceFiles files("main => f(1)   f => function f(x)\\ndisp(x)");
    const std::string main = files.path("main.m");
    mTranslateProgramRequest request = {};
    request.size = sizeof request;
    request.file = main.c_str();
    const Result all = translated(request);
    ASSERT_EQ(all->file_count, 2u);
    for (const auto *file : {all->files[0], all->files[1]}) {
        EXPECT_EQ(file->bytes, std::filesystem::file_size(file->path));
        EXPECT_EQ(file->kind, MTRANSLATE_IS_REGULAR);
        EXPECT_NE(file->inode, 0u);
    }
    request.allow = [](void *, const mTranslateProgramFile *file) {
        return int32_t{!std::string_view(file->name).ends_with("/f.m")};
    };
    const Result refused = translated(request);
    EXPECT_EQ(refused->status, MTRANSLATE_PROGRAM_UNREADABLE);
    EXPECT_EQ(std::string(refused->failure),
              "the caller does not allow to open " + files.path("f.m"));
    EXPECT_EQ(refused->file_count, 1u);
}

TEST(Interface, tells_of_the_kinds_of_messages) {
    size_t count = 0;
    const mTranslateMessageKind *const *kinds = mTranslateMessageKinds(&count);
    std::set<std::string> codes;
    for (size_t i = 0; i < count; i++) {
        codes.insert(kinds[i]->code);
        EXPECT_EQ(mTranslateFindMessageKind(kinds[i]->name), kinds[i]);
    }
    EXPECT_EQ(codes.size(), count);
    Tool tool("main => y = nope");
    const Result result = translated(tool.request);
    const mTranslateMessageKind *kind = mTranslateFindMessageKind("mt401");
    EXPECT_EQ(result->messages[0]->kind, kind);
    EXPECT_EQ(kind->operand_count, result->messages[0]->operand_count);
    EXPECT_EQ(mTranslateFindMessageKind("MT4"), nullptr);
}

/* Line ends of three kinds, comments in what is not translated, names of what is around. */
TEST(Interface, tells_what_becomes_of_a_command) {
    Tool tool("");
    tool.request.file = nullptr;
    tool.request.command =
        "x = 1; % é\r\ny = @() @() x;\rtry, catch e % a\nend\nx(1, [2 ... b\n 3]) = [];\nz = [1 % "
        "c\n2 3)";
    tool.request.flags |= MTRANSLATE_DETAILS;
    const Result result = translated(tool.request);
    tool.request.command = "x = 'é';\r\ny = = x";
    tool.request.language = "classic";
    EXPECT_EQ(messages_of(*translated(tool.request)), "command 2:5/5-2:5/5 0  [y = = x]\n");
    EXPECT_EQ(shown_names(*result) + shown_details(*result), R"(x is 1 in -1: 1:1 2:13 5:1, from 1:1
y is 1 in -1: 2:1, from 2:1
e is 1 in -1: 3:12, from 3:12
piece 0 1-1 command 1:1/1-1:6/6
piece 3 1-1 command 1:8/8-1:12/11
piece 0 2-7 command 2:1/1-2:14/14
piece 7 8-8 command 3:1/1-3:4/4
piece 1 9-9 command 3:6/6-3:13/13
piece 3 10-10 command 3:14/14-3:17/17
piece 7 11-12 command 5:1/1-6:10/10
piece 7 13-14 command 7:1/1-8:5/5
comment 1 command 1:8/8-1:12/11
comment 1 command 3:14/14-3:17/17
comment 1 command 5:13/13-5:14/14
comment 1 command 7:8/8-7:11/11
8 lines, 89 bytes, 5 statements, 2 without, 4 comments, 4 kept
)");
}

}  // namespace

}  // namespace mtranslate
