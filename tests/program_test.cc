/* Programs in matlab: procedures with their heads and returns, and files that call each other. */
#include <gtest/gtest.h>
#include <mtranslate.h>

#include <filesystem>
#include <map>
#include <regex>
#include <sstream>

#include "diagnose/messages.h"
#include "lower/lines/pieces.h"
#include "lower/program.h"
#include "support/observers.h"
#include "tests/translation.h"

namespace mtranslate {

namespace {

/* The messages of a run, a line each: "file.m:line CODE text", files without their folder. Names
 * that are found nowhere are left out: most rows call some. */
void note_message(void *context, const Message *message) {
    if (message->id == UNKNOWN_FUNCTION) return;
    const std::filesystem::path file = message->file ? message->file : "";
    auto &messages = *static_cast<std::string *>(context);
    messages += file.filename().string() + ":" + std::to_string(place_of(message).line) + " " +
                MessageTable[message->id].code + " " + message->text;
    if (message->called_from)
        messages += " (from " + std::filesystem::path(message->called_from).filename().string() +
                    ":" + std::to_string(message->called_from_line) + ")";
    messages += "\n";
}

/* Of the next run. */
void note_messages_in(std::string *text) {
    Observers observers{};
    observers.context = text;
    observers.message = note_message;
    observe_next_run(observers);
}

/* Whatever can be translated of a file. */
std::string translated_by(StandInHost &host, const std::string &path) {
    ValueStore &values = host.values();
    const HostValue options[] = {values.equation(values.name("Language"), values.string("matlab")),
                                 values.equation(values.name("KeepGoing"), values.boolean(true))};
    return translate(host, "file", path, options);
}

/* The translation and after it the messages, with folder left out of both. */
std::string translated(const std::string &mode, const std::string &source,
                       const std::string &folder = "") {
    StandInHost host;
    ValueStore &values = host.values();
    const HostValue options[] = {values.equation(values.name("Language"), values.string("matlab")),
                                 values.equation(values.name("KeepGoing"), values.boolean(true))};
    std::string noted;
    note_messages_in(&noted);
    std::string text = translate(host, mode, source, options) + noted;
    return folder.empty() ? text : std::regex_replace(text, std::regex(folder), "");
}

TEST(MatlabProcedures, have_their_heads_and_returns) {
    for (const Row &row : side_by_side(table("matlab_procedures"))) {
        for (int i = 0; i < 2; i++) {
            EXPECT_EQ(translated("command", row.source), row.expected) << row.source;
            leave_broken_run();
        }
    }
}

/* A function with as many outputs as returns, and the last ones. */
std::string returns(int count, const std::string &last = "") {
    std::string names = "function [a";
    for (int i = 0; i < count; i++) names += ", a" + std::to_string(i);
    std::string text = names + last + "] = f(x)\na = 1;\n";
    for (int i = 0; i < count; i++) text += "if x, return, end\n";
    return text + "end\n";
}

TEST(MatlabProcedures, share_a_long_return) {
    const std::string text = translated("command", returns(200));
    EXPECT_NE(text.find("  qxrp_1 := proc( qxrp_2 )\n    local qxrp_3;\n"
                        "    qxrp_3 := rtable([copy(a)],subtype='Vector[row]');\n"),
              std::string::npos);
    EXPECT_NE(text.find("then\n    return qxrp_1(_nresults);\n"), std::string::npos);
    EXPECT_LT(translated("command", returns(400)).size(), 5 * text.size() / 2);
    EXPECT_NE(translated("command", returns(99, ", varargout"))
                  .find("    if qxrp_2 >= 101 then\n"
                        "      return seq(qxrp_3(qxrp_i),qxrp_i=1..100), "
                        "seq(varargout(qxrp_i),qxrp_i=1..qxrp_2-100);\n"
                        "    elif qxrp_2 >= 2 then\n"),
              std::string::npos);
    StandInHost host;
    const std::string name(3000, 'v');
    host.translate_name("varargout", name);
    const HostValue options[] = {
        host.values().equation(host.values().name("Language"), host.values().string("matlab"))};
    EXPECT_NE(host.translate("command", "function varargout = f\nvarargout{1} = 1;\n",
                             {std::begin(options), std::end(options)})
                  .value_or("")
                  .find("return " + name + "("),
              std::string::npos);
}

/* The files of a row, each after a line "@name", and main, the first of them. */
std::string write_files(const SourceFiles &files, const std::string &row) {
    static const std::regex heading("@(\\S+)\n");
    for (std::sregex_iterator at(row.begin(), row.end(), heading), end; at != end; ++at) {
        const std::string rest = at->suffix();
        files.write((*at)[1].str() + ".m", rest.substr(0, rest.find("\n@")) + "\n");
    }
    return files.path(row.substr(1, row.find('\n') - 1) + ".m");
}

TEST(MatlabPrograms, hold_what_is_called) {
    for (const Row &row : side_by_side(table("matlab_programs") + "\n" + table("matlab_classes"))) {
        const SourceFiles files;
        const std::string main = write_files(files, row.source);
        for (int i = 0; i < 2; i++) {
            EXPECT_EQ(translated("file", main, files.path("")), row.expected) << row.source;
            leave_broken_run();
        }
    }
}

TEST(MatlabPrograms, put_scripts_into_scripts_up_to_limits) {
    const SourceFiles files;
    for (int k = 0; k < 22; k++) {
        const std::string own = std::to_string(k) + ".m", next = std::to_string(k + 1) + "; ";
        files.write("deep" + own, "deep" + next);
        if (k < 14) files.write("wide" + own, "wide" + next + "wide" + next);
    }
    const struct {
        std::string name;
        bool is_deep, is_wide;
    } rows[] = {{"deep0", true, false},
                {"deep1", false, false},
                {"wide0", false, true},
                {"wide2", false, false}};
    for (const auto &row : rows) {
        const std::string text = translated("file", files.path(row.name + ".m"), files.path(""));
        EXPECT_EQ(text.find("more than 20 scripts call each other") != text.npos, row.is_deep);
        EXPECT_EQ(text.find("10000 scripts have been put already") != text.npos, row.is_wide);
    }
}

TEST(MatlabPrograms, look_along_the_path_in_order) {
    const SourceFiles files("main => f(g(1))   a/f => function f(x)   b/f => function f(x, y)");
    files.write("b/g.m", "function y = g(x)\ny = 2;");
    StandInHost host;
    ValueStore &values = host.values();
    const HostValue options[] = {values.equation(values.name("Language"), values.string("matlab")),
                                 values.list_of_strings({files.path("b"), files.path("a")})};
    std::string noted;
    note_messages_in(&noted);
    const std::string g = "g := proc( x )\n  local y;\n  y := 2;\n  return y;\nend proc;\n\n";
    EXPECT_EQ(translate(host, "file", files.path("main.m"), options),
              g + "f := proc( x )\nend proc;\n\nf(g(1));\n");
    EXPECT_EQ(std::regex_replace(noted, std::regex(files.path("")), ""),
              "main.m:1 MT404 'a/f.m' is read; another file of that name on the search path is "
              "not: b/f.m\n");
    // A script that only the caller's folder has is none for a script of another folder.
    files.write("caller.m", "s");
    files.write("b/s.m", "p");
    files.write("private/p.m", "x = 1;");
    EXPECT_NE(translate(host, "file", files.path("caller.m"), options)
                  .find("'p' cannot be put here: its name leads elsewhere"),
              std::string::npos);
}

/* A chain of files, each of which calls the next one and a namesake in the private folder, which
 * the next one's folder reaches by another way. */
TEST(MatlabPrograms, read_a_file_once_by_whatever_way) {
    constexpr int FILES = 400;
    const SourceFiles files;
    for (int i = 0; i < FILES; i++) {
        const std::string name = "f" + std::to_string(i);
        const std::string next = "f" + std::to_string(i + 1);
        const std::string folder = i % 2 == 0 ? "even/" : "odd/";
        std::ostringstream source;
        source << "function " << name << "\n" << next << "; g" << name << "; g" << next << ";\n";
        files.write(folder + name + ".m", source.str());
        files.write("even/private/g" + name + ".m", "function g" + name + "\n");
    }
    std::filesystem::create_directory_symlink(files.path("even/private"),
                                              files.path("odd/private"));
    files.write("main.m", "f0;\n");
    StandInHost host;
    ValueStore &values = host.values();
    const HostValue options[] = {values.equation(values.name("Language"), values.string("matlab")),
                                 values.list_of_strings({files.path("even"), files.path("odd")})};
    const std::string text = translate(host, "file", files.path("main.m"), options);
    for (int i = 1; i < FILES; i++) {
        for (const std::string &name : {"f" + std::to_string(i), "gf" + std::to_string(i)}) {
            const std::string head = "\n" + name + " := proc(";
            const size_t at = text.find(head);
            ASSERT_NE(at, text.npos) << name;
            EXPECT_EQ(text.find(head, at + 1), text.npos) << name;
        }
    }
    EXPECT_EQ(text.find("qxrp_"), text.npos);
}

TEST(MatlabPrograms, find_classes_along_the_path_in_order) {
    const SourceFiles files("main => x = c(1); f(x); g(x);   a/@c/c => function x = c(v)");
    files.write("a/@c/f.m", "function f(x, inA)\nh(x);");
    files.write("b/@c/f.m", "function f(x, inB)");
    files.write("b/@c/g.m", "function g(x)\nf(x); h(x);");
    files.write("b/@c/private/h.m", "function h(x)");
    StandInHost host;
    ValueStore &values = host.values();
    const HostValue options[] = {values.equation(values.name("Language"), values.string("matlab")),
                                 values.list_of_strings({files.path("a"), files.path("b")})};
    EXPECT_EQ(translate(host, "file", files.path("main.m"), options),
              "c := proc( v )\n  local x;\nend proc;\n\n"
              "c_f := proc( x, inB )\nend proc;\n\n"
              "c_g := proc( x )\n  c_f(x);\n  c_private_h(x);\nend proc;\n\n"
              "c_private_h := proc( x )\nend proc;\n\nx := c(1);\nc_f(x);\nc_g(x);\n");
}

/* Along a path of the folders one, two, a class folder in three, and that of the main file. */
TEST(MatlabPrograms, find_class_folders) {
    for (const Row &row : side_by_side(table("matlab_class_folders"))) {
        const SourceFiles files;
        const std::string main = write_files(files, row.source);
        const Texts folders = {files.path("one"), files.path("two"), files.path("three/@c"),
                               files.path(".")};
        for (const std::string &folder : folders) std::filesystem::create_directories(folder);
        files.write("one/@c/tell", "no source");
        StandInHost host;
        ValueStore &values = host.values();
        const HostValue options[] = {
            values.equation(values.name("Language"), values.string("matlab")),
            values.list_of_strings({folders.rbegin(), folders.rend()})};
        EXPECT_EQ(translate(host, "file", main, options), row.expected) << row.source;
    }
}

TEST(MatlabPrograms, ask_the_host_in_order_of_the_source) {
    const SourceFiles files("main => h(1); own(2); s   h => function h(x)   s => q = r;");
    StandInHost host;
    host.translate_name("r", "random");
    host.translate_function("k", "K(x)");
    const struct {
        const char *mode;
        std::string source, calls;
    } rows[] = {
        {"command", "function y = f(x, ~)\ny = g(x) + h(1, x);\nfunction h(z)\nz = k(f(z));",
         "y x g call(g, x) z k call(k, f(qxrp_z))"},
        {"command", "function f\nn(1);\nfunction n(x)\nm(x); f;\nend\nend", "x m call(m, x)"},
        {"command", "x = @g; x(1); f{2}; g = @(t) t + k(t);", "x g f g t k call(k, t)"},
        {"file", files.path("main.m"), "h call(h, 1) own call(own, 2) q r x"}};
    host.record_calls();
    for (const auto &row : rows) {
        translate_in(host, "matlab", row.mode, row.source);
        std::string calls;
        for (const std::string &call : host.take_calls())
            calls += (calls.empty() ? "" : " ") + call;
        calls = std::regex_replace(calls, std::regex("TranslateName\\((\\w+)\\)"), "$1");
        EXPECT_EQ(std::regex_replace(calls, std::regex("TranslateFunction"), "call"), row.calls)
            << row.source;
    }
}

TEST(MatlabPrograms, raise_the_first_failure_at_the_end) {
    const SourceFiles files(
        R"(main => \tx = f(1);\neval y   f => function y = f(x)\n  y = x + ;\nx = 1;)");
    const std::string folder = files.path("");
    const std::string error = "on line 2 of " + folder +
                              "f.m, expected a value after '+', found ';' " + "(called from " +
                              folder + "main.m:1)\n  y = x + ;\n          ^\n";
    const std::string text =
        "f := proc( qxrp_x )\n  local y, x;\n  if "
        "nargs >= 1 "
        "then\n    x := qxrp_x;\n  end if;\n  # not translated (MT101 "
        "unexpected-token): y = x + ;\n  x := 1;\n  return y;\nend proc;\n\nx := f(1);\n# not "
        "translated (MT204 eval): eval y\n";
    for (const ErrorExit exit : EVERY_EXIT) {
        const Outcome outcome = run_leaving(exit, "file", files.path("main.m"), "matlab");
        EXPECT_EQ(outcome.errors, Texts{error});
        EXPECT_EQ(outcome.result.value_or(""), exit == ErrorExit::Return ? text : "");
    }
}

/* What became of the pieces of the main source, by their places. */
using Pieces = std::map<std::pair<uint32_t, PieceEnd>, std::string>;

struct NotedProgram {
    Pieces pieces;
    std::string finished; /* path of the file */
};

void note_piece_of_main(void *context, const Node *node, PieceEnd end, const char *target) {
    static const char *const words[] = {"own",   "file",    "host",    "language",
                                        "class", "unknown", "comment", "source"};
    if (CurrentFile->source->caller) return;
    const bool is_call = end < COMMENT_IS_PUT;
    std::string &text =
        static_cast<NotedProgram *>(context)->pieces[{node->offset, is_call ? CALL_OF_OWN : end}];
    text = is_call ? std::string(node->text) + " " + words[end] : words[end];
    if (target) text += " " + std::filesystem::path(target).filename().string();
}

TEST(MatlabPrograms, tell_what_becomes_of_their_pieces) {
    const SourceFiles files(R"(f => function y = f(x)\ny = g(x); % no   s => q = g(1);)");
    StandInHost host;
    host.translate_name("r", "random");
    host.translate_function("k", "K(x)");
    const struct {
        std::string source, pieces;
    } rows[] = {
        {"x = f(1) + g(x) + r + k(2) + i; s; x(1);",
         "f file f.m, g unknown, r host, k host, i language, s file s.m"},
        {"h = @(x) f(x); p = @g; p = @r; p = @and; hold on; l",
         "f file f.m, g unknown, r host, and language, hold unknown, l unknown"},
        {"% a\nx = 1; % b\neval('('); % c\nx = [1 ... d\n];\ny = (1;",
         "comment, comment, eval unknown, source, comment, comment, source"},
        {"while g(1) && f(2), n = isempty(k); end",
         "g unknown, f file f.m, isempty language, k host"},
        {"s.a = 1; x = isfield(s, 'a');", "isfield language"},
        {"function f(x)\nerror(nargchk(0, 1, nargin));",
         "error unknown, nargchk language, nargin language"},
    };
    for (const auto &row : rows) {
        NotedProgram noted;
        Observers observers{};
        observers.context = &noted;
        observers.piece = note_piece_of_main;
        observers.program = [](void *context, const SourceFile *file) {
            static_cast<NotedProgram *>(context)->finished = file->path ? file->path : "";
        };
        observe_next_run(observers);
        files.write("main.m", row.source);
        translated_by(host, files.path("main.m"));
        std::string text;
        for (const auto &[place, piece] : noted.pieces) text += (text.empty() ? "" : ", ") + piece;
        EXPECT_EQ(text, row.pieces) << row.source;
        EXPECT_EQ(noted.finished, files.path("main.m"));
        leave_broken_run();
    }
}

/* However a run ends, who observed it hears nothing of the next one. */
TEST(MatlabPrograms, are_observed_in_one_run_alone) {
    for (const ErrorExit exit : EVERY_EXIT) {
        std::string noted;
        note_messages_in(&noted);
        run_leaving(exit, "command", "x = ;", "matlab");
        EXPECT_NE(noted, "");
        noted.clear();
        if (exit != ErrorExit::Jump) {
            EXPECT_EQ(Observing.message, nullptr);
        }
        run_leaving(exit, "command", "x = ;", "matlab");
        EXPECT_EQ(noted, "");
        note_messages_in(&noted);
        mTranslateRelease();
        run_leaving(exit, "command", "x = ;", "matlab");
        EXPECT_EQ(noted, "");
    }
}

}  // namespace

}  // namespace mtranslate
