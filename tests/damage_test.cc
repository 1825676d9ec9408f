/* Damaged programs in matlab and octave: a message at its place, whatever is wrong, and a next run
 * that knows nothing of it. */
#include <gtest/gtest.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <cctype>
#include <random>
#include <regex>
#include <sstream>
#include <vector>

#include "diagnose/messages.h"
#include "emit/switch_writer.h"
#include "lower/program/program_files.h"
#include "syntax/scan/spellings.h"
#include "tests/generate.h"
#include "tests/host_text.h"
#include "tests/matlab_run.h"
#include "tests/tool.h"

namespace mtranslate {

namespace {

bool is_word(char c) { return std::isalnum(static_cast<unsigned char>(c)) || c == '_'; }

/* Words, numbers, blanks, line ends and single characters; those of UTF-8 as they come, byte by
 * byte. Not by a regular expression: most of the time would go there. */
Texts tokens_of(const std::string &source) {
    Texts tokens;
    for (size_t at = 0, end; at < source.size(); at = end) {
        end = at + 1;
        if (is_word(source[at]))
            while (end < source.size() && is_word(source[end])) end++;
        else if (source[at] == ' ')
            end = std::min(source.find_first_not_of(' ', at), source.size());
        else if (source.compare(at, 2, "\r\n") == 0)
            end++;
        tokens.push_back(source.substr(at, end - at));
    }
    return tokens;
}

std::string joined(const Texts &tokens) {
    std::string text;
    for (const std::string &token : tokens) text += token;
    return text;
}

/* Does one thing to a source: takes a token out, doubles it, puts another there, cuts the rest off
 * or changes a byte. */
std::string damaged(const std::string &source, std::mt19937 &random) {
    static const Texts others = {
        "end",   "(", ")", "[",  "]",  "{",   "}", "'",        "\"",   "%{\n", "%}\n", "...",
        "=",     ",", ";", "\n", "if", "for", "@", "function", "else", "~",    "==",   "case",
        "until", "!", "?", "#",  ".",  "\\",  "é", "\xc3",     "\xa0", "$",    "\x1a", "classdef "};
    Texts tokens = tokens_of(source + " ");
    const auto at = tokens.begin() + static_cast<long>(random() % tokens.size());
    switch (random() % 6) {
        case 0: tokens.erase(at); break;
        case 1: tokens.insert(at, *at); break;
        case 2: std::swap(*at, tokens[random() % tokens.size()]); break;
        case 3: tokens.erase(at, tokens.end()); break;
        case 4: {
            char &byte = at->at(random() % at->size());
            byte = static_cast<char>(byte ^ (1 << random() % 8));
            break;
        }
        default: *at = others[random() % others.size()];
    }
    std::string text = joined(tokens);
    std::ranges::replace(text, '\0', '\1');  // a NUL would end the command
    return text;
}

/* Calls check(source) for many damaged programs until one fails. */
template <typename Check>
void for_damaged(unsigned programs, const Check &check) {
    for (unsigned seed = 0; seed < programs; seed++) {
        std::mt19937 random(seed);
        const ProgramKind kind = static_cast<ProgramKind>(seed % 3);
        const bool has_comments = seed % 2 == 0;
        const std::string source =
            written(make_program(kind, seed), {seed, true, true, false, true, has_comments, "\n"});
        for (int i = 0; i < 8; i++) {
            std::string wrong = damaged(source, random);
            if (i % 4 == 3) wrong = damaged(wrong, random);
            SCOPED_TRACE(wrong);
            check(wrong);
            if (testing::Test::HasFailure()) return;
        }
    }
}

bool is_failure_of(const NotedMessage &message) { return is_failure(message.id); }

TEST(Damage, gives_messages_at_their_places_and_well_formed_text) {
    for_damaged(120, [](const std::string &source) {
        for (const char *language : {"matlab", "octave"}) {
            const MatlabRun run = run_matlab(source, {language, "command", true});
            EXPECT_EQ(run.misplaced, "");
            EXPECT_EQ(run.errors, Texts());
            EXPECT_EQ(form_error(run.text.value()), "") << *run.text;
        }
    });
}

Texts found_in(const std::string &text, const std::regex &form) {
    Texts found(std::sregex_token_iterator(text.begin(), text.end(), form), {});
    std::ranges::sort(found);
    return found;
}

/* A translation or a message, whatever the source is; and the same again in the same process. */
void check_odd(const std::string &source) {
    SCOPED_TRACE(source);
    for (const char *language : {"matlab", "octave"}) {
        const MatlabRun run = run_matlab(source, {language, "command", true});
        EXPECT_EQ(run.misplaced, "");
        EXPECT_EQ(run.errors, Texts());
        EXPECT_EQ(form_error(run.text.value()), "") << *run.text;
        EXPECT_EQ(run_matlab(source, {language, "command", true}).text, run.text);
    }
}

/* What nobody writes, and what stands where something else is meant. */
TEST(Damage, may_be_odd_programs) {
    std::istringstream all(read(MTRANSLATE_SOURCE_DIR "/tests/cases/odd_programs.txt"));
    std::string program;
    for (std::string line; std::getline(all, line);) {
        program += line + '\n';
        if (!line.empty() && !all.eof()) continue;
        check_odd(program);
        program.clear();
    }
    check_odd(program);
}

/* What is looked through only so far: long statements, deep ones, many of them. */
TEST(Damage, may_be_odd_programs_without_measure) {
    const std::string sum = "(a" + repeated(" + a", 600) + ")";
    const std::string call = repeated("max(", 210) + "a" + repeated(")", 210);
    const std::string rows = repeated("[", 210) + "a" + repeated("]", 210);
    const std::string checks = "if nargin < 2, error('a'), end, b = b + 1; c = 1; y = b;";
    const std::string many = repeated("x = 1; ", 50);
    std::string text = "x = 1;", copies = "v0 = a;";
    std::string fields = "t.a.b.c.d{1} = 1; t.a.b.c.d{1}{2} = {};";
    for (int k = 0; k < 80; k++) {
        const std::string cell = std::to_string(k) + "{1} = {1};";
        fields += " s.f" + cell + " t.a.f" + cell;
    }
    for (int k = 0; k < 250; k++)
        copies += " v" + std::to_string(k + 1) + " = v" + std::to_string(k) + ";";
    for (int k = 0; k < 10; k++)
        text = "eval('" + std::regex_replace(text, std::regex("'"), "''") + "');";
    const std::string function = "function y = f(a, b, c)\n";
    for (const std::string &program :
         {fields + "s.g{1} = 2; s.g{2}{1} = {}; y = {s.g{:}}; t.a.g{1} = {2}; y = [t.a.g, {1}]; "
                   "if isfield(s, 'h'), y = s.h; end, if isfield(t.a, 'h'), y = t.a.h{1}; end",
          function + "x = " + sum + "; " + checks, function + many + checks, text,
          function + "for k = 1:3, x = " + sum + "; end, if nargin < 2, b = 1; end, y = b;",
          function + many + "if nargin < 2, b = 1; end, y = b;",
          function + checks + many + "x = " + sum + ";" + many + "y = b;",
          "x(1:" + call + ").a = 1; y = x(1:" + call + "); x(" + rows + ").a = 1; z = " + rows +
              "; z(1) = {1}; x = y(" + rows + ");",
          function + "y = nargin; y = isempty(a) || " + sum + " || b;",
          function + "c = {};" + repeated(" y.p = c; c{1} = 1; d = c; d(2) = y;", 70),
          function + copies + "x(1:v250).a = 1; y = x(v250).a; v250(1) = {1}; y(v250).b = 1;",
          function + "if nargin > 1 && " + sum + " && b > 1 && s.f == 1 && s.f == 2, y = 1; end",
          function + "y = " + sum + " == 1 || iscell(b) || b == 2 || isempty(s.f);",
          "a." + repeated("b", 210) + "(3).c{2} = 1; a." + repeated("b", 210) + "(3).d.e{2} = 1;"})
        check_odd(program);
}

/* Each function of the library with none of its arguments, with all kinds of them, with too many,
 * and in the places of other things. */
TEST(Damage, may_be_odd_calls_of_the_library) {
    const std::string forms =
        "y = F; y = F(); y = F(x); y = F(x, z, 3); y = F('a', 2); y = F(2, 'a'); y = F(2, 3, 4); "
        "y = F([1 2], 2); y = F({1, 2}); y = F(@(t) t + 1, x); y = F(true); y = F(x(:)); "
        "y = F([], 1, 2); y = F(x(:, 1), 1); y = F('', ''); y = F(-2.5); y = F(3i); [y, z] = F(x); "
        "F(x); F; F x; y = F.a; y = F(x).a; y = @F; if F(x) && y, end, y = x(F(x)); "
        "y = x(1:end-F(x)); y = F(x{:}); y = F(s.a, 'b', 1, 'c'); y = F(:);";
    const std::string table = read(MTRANSLATE_SOURCE_DIR "/src/syntax/library/library_table.cc");
    for (const std::string &row : found_in(table, std::regex("\\n    \\{\"\\w+")))
        check_odd(std::regex_replace(forms, std::regex("F"), row.substr(7)));
}

/* The first tokens of a file tell the same of it as its tree does. */
void compare_kinds(void * /*context*/, const Node *tree) {
    const Node *first = tree->first_child;
    while (first && first->kind != NODE_FUNCTION) first = first->next;
    const char *name = first ? first->text : intern("f");
    Source *source = CurrentFile->source;
    const bool is_script = is_script_file(tree, name, source->errors > 0, LANGUAGE_MATLAB);
    EXPECT_EQ(is_script_source(source, name, LANGUAGE_MATLAB), is_script);
}

TEST(Damage, makes_no_other_kind_of_file) {
    RunOptions options;
    options.observers.tree = compare_kinds;
    for_damaged(120, [&](const std::string &source) { run_matlab(source, options); });
}

/* Errors of the syntax come in the order of their places. */
TEST(Damage, is_reported_in_order) {
    for_damaged(60, [](const std::string &source) {
        uint32_t last = 0;
        for (const NotedMessage &message : run_matlab(source).messages) {
            if (severity_of(message.id) != SEVERITY_ERROR) continue;
            EXPECT_GE(message.offset, last) << message.text;
            last = message.offset;
        }
    });
}

/* What is called is in the translation, or in the comments of what could not be translated, and so
 * is every comment, once. Functions without a head that can be read are left out. */
TEST(Damage, loses_no_call_and_no_comment) {
    static const std::regex call("\\bf\\d+\\b");
    static const std::regex comment("_\\d+_");
    for_damaged(60, [](const std::string &source) {
        if (source.find("function") != std::string::npos) return;
        const std::string text = run_matlab(source).text.value();
        for (const std::string &name : found_in(source, call))
            EXPECT_NE(text.find(name), std::string::npos) << name << "\n" << text;
        EXPECT_EQ(found_in(text, comment), found_in(source, comment)) << text;
    });
}

std::string first_failure_of(const MatlabRun &run) {
    const auto first = std::ranges::find_if(run.messages, is_failure_of);
    if (first == run.messages.end()) return "";
    return "on line " + std::to_string(first->line) + ", " + first->text + "\n";
}

/* A run that does not keep going raises the first failure alone, however it leaves, and if
 * RaiseError returns answers what the other run does. */
TEST(Damage, raises_what_is_reported_first) {
    for_damaged(40, [](const std::string &source) {
        const MatlabRun all = run_matlab(source);
        const std::string first = first_failure_of(all);
        for (const ErrorExit exit : EVERY_EXIT) {
            StandInHost host;
            host.leave_errors_by(exit);
            const MatlabRun run = run_matlab(host, source, {"matlab", "command", false});
            ASSERT_EQ(run.errors.size(), first.empty() ? 0u : 1u);
            if (!first.empty()) {
                ASSERT_EQ(run.errors[0].substr(0, first.size()), first);
            }
            if (first.empty() || exit == ErrorExit::Return) {
                ASSERT_EQ(run.text, all.text);
            }
            ASSERT_EQ(run.messages.size(), all.messages.size());
        }
    });
}

/* One run: its language, mode and how its errors leave. */
struct Trial {
    std::string source;
    const char *language;
    bool keeps_going;

    std::string outcome() const {
        static unsigned turn = 0;
        SwitchCounter = 0;
        StandInHost host;
        host.leave_errors_by(EVERY_EXIT[turn++ % 2]);  // by throwing or returning
        const MatlabRun run = run_matlab(host, source, {language, "command", keeps_going});
        std::string text = run.errors.empty() ? run.text.value_or("null") : run.errors[0];
        for (const NotedMessage &message : run.messages) text += message.text + "\n";
        return text;
    }
};

/* What the trial gives in a process that has run nothing else. */
std::string outcome_alone(const Trial &trial) {
    int ends[2];
    if (pipe(ends) != 0) return "no pipe";
    const pid_t child = fork();
    if (child == 0) {
        const std::string text = trial.outcome();
        close(ends[0]);
        _exit(::write(ends[1], text.data(), text.size()) < 0);
    }
    close(ends[1]);
    std::string text;
    char bytes[4096];
    for (ssize_t size; (size = ::read(ends[0], bytes, sizeof bytes)) > 0;)
        text.append(bytes, static_cast<size_t>(size));
    close(ends[0]);
    waitpid(child, nullptr, 0);
    return text;
}

/* Programs in all languages, whole and damaged. */
std::vector<Trial> trials() {
    std::vector<Trial> all;
    for (unsigned seed = 0; seed < 24; seed++) {
        std::mt19937 random(seed);
        const char *const languages[] = {"matlab", "octave", "classic"};
        std::string source = written(make_program(static_cast<ProgramKind>(seed % 3), seed), {});
        if (seed % 2 == 1) source = damaged(source, random);
        for (const char *language : languages) all.push_back({source, language, seed % 4 < 2});
    }
    all.push_back({"switch a, case 1, b; end, global c", "classic", false});
    all.push_back({"x = ones(2); y = x'; [x y]", "classic", false});
    all.push_back({"function f(varargin), global a b, persistent c", "classic", false});
    all.push_back({"x = [1, {f('open", "classic", false});
    return all;
}

TEST(Damage, leaves_nothing_for_the_next_run_in_any_language) {
    const std::vector<Trial> all = trials();
    Texts alone;
    for (const Trial &trial : all) alone.push_back(outcome_alone(trial));
    std::mt19937 random(1);
    for (size_t i = 0; i < 6 * all.size(); i++) {
        const size_t which = random() % all.size();
        ASSERT_EQ(all[which].outcome(), alone[which]) << all[which].language << "\n"
                                                      << all[which].source;
    }
}

}  // namespace

}  // namespace mtranslate
