/* What holds for every program: generated ones, in all their writings. */
#include <gtest/gtest.h>

#include <algorithm>
#include <map>
#include <random>
#include <regex>
#include <sstream>
#include <vector>

#include "diagnose/messages.h"
#include "driver/run.h"
#include "lower/lines/origins.h"
#include "syntax/parse/parser.h"
#include "tests/generate.h"
#include "tests/host_text.h"
#include "tests/matlab_run.h"

namespace mtranslate {

namespace {

constexpr unsigned PROGRAMS = 80; /* of a kind */
constexpr ProgramKind KINDS[] = {ProgramKind::SCRIPT, ProgramKind::FUNCTIONS,
                                 ProgramKind::WITH_GAPS};

std::vector<Writing> writings(unsigned seed) {
    return {{},
            {seed, true, false, false, false, false, "\n"},
            {seed, false, true, false, false, false, "\n"},
            {seed, false, false, false, true, false, "\r\n"},
            {seed, true, true, false, true, true, "\n"},
            {seed, true, true, false, true, true, "\r"}};
}

/* Calls check(program) for many programs until one fails. */
template <typename Check>
void for_programs(std::initializer_list<ProgramKind> kinds, const Check &check) {
    for (const ProgramKind kind : kinds) {
        for (unsigned seed = 0; seed < PROGRAMS; seed++) {
            const Program program = make_program(kind, seed);
            SCOPED_TRACE("seed " + std::to_string(seed) + ":\n" + written(program, {}));
            check(program, seed);
            if (testing::Test::HasFailure()) return;
        }
    }
}

/* The tree without comments and parentheses, operators in pairs. */
std::string shape(const Node *node);

std::string children_of(const Node *node) {
    std::string text;
    for (const Node *child = first_child(node); child; child = child->next)
        if (child->kind != NODE_COMMENT) text += " " + shape(child);
    return text;
}

std::string shape_of_chain(const Node *chain) {
    std::string text = shape(chain->first_child);
    for (const Node *node = chain->first_child->next; node; node = node->next) {
        text.insert(0, "(").append(OperatorRows[node->joint].spelling);
        if (node->kind != NODE_POSTFIX) text += shape(node);
        text += ")";
    }
    return text;
}

std::string shape(const Node *node) {
    if (node->kind == NODE_PARENS) return shape(node->first_child);
    if (node->kind == NODE_CHAIN) return shape_of_chain(node);
    const bool has_text = node->kind != NODE_PARAMETERS && node->kind != NODE_FILE && node->text;
    return "(" + std::to_string(node->kind) + (has_text ? node->text : "") +
           OperatorRows[node->op].spelling + children_of(node) + ")";
}

std::string shape_of(const std::string &source) {
    begin_run();
    begin_messages();
    begin_syntax();
    Source *record = new_source(nullptr, source.c_str(), static_cast<uint32_t>(source.size()));
    std::string text = shape(parse_source(record, LANGUAGE_MATLAB));
    for (const Message *message = FirstMessage; message; message = message->next)
        text += std::to_string(place_of(message).line) + ": " + message->text + "\n";
    release_run();
    return text;
}

TEST(Generated, programs_have_one_tree_in_every_writing) {
    for_programs({KINDS[0], KINDS[1], KINDS[2]}, [](const Program &program, unsigned seed) {
        const std::string expected = shape_of(written(program, {}));
        std::vector<Writing> others = writings(seed);
        others.push_back({seed, false, false, true, false, false, "\n"});
        others.push_back({seed, true, true, true, true, true, "\n"});
        for (const Writing &writing : others) {
            const std::string source = written(program, writing);
            ASSERT_EQ(shape_of(source), expected) << source;
        }
    });
}

TEST(Generated, programs_have_one_translation_in_every_writing) {
    for_programs({KINDS[0], KINDS[1]}, [](const Program &program, unsigned seed) {
        const std::string expected = run_matlab(written(program, {})).text.value();
        for (const Writing &writing : writings(seed)) {
            const std::string source = written(program, writing);
            ASSERT_EQ(without_comments(run_matlab(source).text.value()), without_comments(expected))
                << source;
        }
        // In octave a text in double quotes is no object.
        const std::string source = written(program, {});
        if (source.find('"') != std::string::npos) return;
        ASSERT_EQ(run_matlab(source, {"octave", "command", true}).text, expected);
    });
}

TEST(Generated, translations_have_the_form_of_host_text) {
    for_programs({KINDS[0], KINDS[1], KINDS[2]}, [](const Program &program, unsigned seed) {
        for (const Writing &writing : writings(seed)) {
            const std::string text = run_matlab(written(program, writing)).text.value();
            ASSERT_EQ(form_error(text), "") << text;
        }
    });
}

/* Names of a letter and a number. */
void sort_by_number(Texts &names) {
    const auto number = [](const std::string &name) { return std::stoi(name.substr(1)); };
    std::ranges::sort(names, {}, number);
}

Texts marks_in(const std::string &text) {
    static const std::regex mark("_\\d+_");
    return {std::sregex_token_iterator(text.begin(), text.end(), mark), {}};
}

TEST(Generated, comments_are_kept_in_order) {
    for_programs({KINDS[0], KINDS[1], KINDS[2]}, [](const Program &program, unsigned seed) {
        const std::string source = written(program, {seed, true, true, false, true, true, "\n"});
        const std::string text = run_matlab(source).text.value();
        Texts kept = marks_in(text);
        if (!program.is_in_order) sort_by_number(kept);
        ASSERT_EQ(kept, marks_in(source)) << source << "\n" << text;
    });
}

/* Variables that have their values from each other, in chains and circles, and every question about
 * them: as bounds, positions, elements and cells. */
std::string dependent_variables(unsigned seed) {
    static const Texts forms = {
        "v1 + v2 + v2*v2 + v2", "[v1]", "{v1}", "v1:v2", "max(v1, v2)", "v1(v2)", "(v1)'",
        "-v1 + (v2)",           "v1",   "5"};
    static const Texts uses = {"y = x(1:v1);", "y(v1) = v2;",    "x(v1) = [];",
                               "y = v1{v2};",  "c{v1}(2) = v2;", "y = v1(1:v2-1);"};
    std::minstd_rand random(seed + 1);
    const auto filled = [&](std::string text) {
        for (const char *name : {"v1", "v2"})
            for (size_t at = 0; (at = text.find(name, at)) != std::string::npos; at += 2)
                text.replace(at, 2, "w" + std::to_string(random() % 9));
        return text;
    };
    std::string source;
    for (int k = 0; k < 9; k++)
        source += "w" + std::to_string(k) + " = " + filled(forms[random() % forms.size()]) + ";\n";
    for (const std::string &use : uses) source += filled(use) + "\n";
    return source;
}

TEST(Generated, variables_may_depend_on_each_other) {
    for (unsigned seed = 0; seed < 1000; seed++) {
        const std::string source = dependent_variables(seed);
        SCOPED_TRACE(source);
        ASSERT_EQ(form_error(run_matlab(source).text.value()), "");
    }
    // each variable asks the next one many times: answered once, or this never ends
    std::string chain;
    for (int k = 0; k < 100; k++) {
        const std::string next = "v" + std::to_string(k + 1);
        chain += "v" + std::to_string(k) + " = " + next + repeated(" + " + next, 9) + ";\n";
    }
    EXPECT_EQ(form_error(run_matlab(chain + "v100 = 1; x = 1:9; y = x(1:v0);").text.value()), "");
}

/* The lines of a run that come from one part of its source. */
struct Mapped {
    LineKind kind;
    uint32_t begin, end;
    uint32_t first, last;
};

std::vector<Mapped> *mapped;

void note_lines(void * /*context*/, const Origin *origin, uint32_t first, uint32_t count) {
    mapped->push_back({origin->kind, origin->begin, origin->end, first, first + count - 1});
}

/* A translation with what its lines come from, each part with all its lines, by their places. */
struct MappedText {
    Texts lines;                        /* the first one is 0, which is none */
    std::vector<Mapped> parts;          /* but what functions need at their starts and ends */
    std::map<uint32_t, Mapped> by_line; /* the innermost part */
};

Texts lines_of(const std::string &text) {
    Texts lines;
    std::istringstream from(text);
    for (std::string line; std::getline(from, line);) lines.push_back(line);
    return lines;
}

MappedText mapped_text(const std::string &source) {
    MappedText text;
    std::vector<Mapped> told;
    mapped = &told;
    RunOptions options;
    options.observers.lines = note_lines;
    text.lines = lines_of("\n" + run_matlab(source, options).text.value());
    std::ranges::stable_sort(
        told, {}, [](const Mapped &part) { return std::tuple(part.begin, part.kind, part.first); });
    for (const Mapped &part : told) {
        for (uint32_t line = part.first; line <= part.last; line++) text.by_line[line] = part;
        if (part.kind == PRELUDE_LINES || part.kind == RESULT_LINES) continue;
        const bool is_more = !text.parts.empty() && text.parts.back().begin == part.begin &&
                             text.parts.back().kind == part.kind;
        if (is_more)
            text.parts.back().last = part.last;
        else
            text.parts.push_back(part);
    }
    return text;
}

/* Whether the lines of some innermost part around the byte hold the text. */
bool hold_at(const MappedText &text, size_t at, const std::string &wanted) {
    const Mapped *innermost = nullptr;
    for (const Mapped &part : text.parts)
        if (part.begin <= at && at < part.end)
            if (!innermost || part.end - part.begin <= innermost->end - innermost->begin)
                innermost = &part;
    if (!innermost) return false;
    const auto from = text.lines.begin() + innermost->first;
    return std::any_of(from, from + (innermost->last - innermost->first + 1),
                       [&](const std::string &line) { return line.find(wanted) != line.npos; });
}

TEST(Generated, lines_hold_what_they_come_from) {
    for_programs({KINDS[0], KINDS[1], KINDS[2]}, [](const Program &program, unsigned seed) {
        for (const Writing &writing : writings(seed)) {
            const std::string source = written(program, writing);
            const MappedText text = mapped_text(source);
            Texts wanted = marks_in(source);
            if (!writing.has_separators)
                wanted.insert(wanted.end(), program.literals.begin(), program.literals.end());
            for (const std::string &held : wanted) {
                const size_t at = source.find(held);
                if (at == source.npos) continue;  // written otherwise
                ASSERT_TRUE(hold_at(text, at, held)) << held << "\n" << source;
            }
        }
    });
}

/* What stands between two parts: nothing but blanks and ends, and whether an empty line. */
enum class Between { SOMETHING, NOTHING, EMPTY_LINE };
Between between(const std::string &source, uint32_t begin, uint32_t end) {
    if (begin > end) return Between::SOMETHING;
    const std::string text = source.substr(begin, end - begin);
    if (text.find_first_not_of(" \t\n,;") != text.npos) return Between::SOMETHING;
    const auto ends = std::ranges::count(text, '\n');
    return ends > 1 ? Between::EMPTY_LINE : ends == 1 ? Between::NOTHING : Between::SOMETHING;
}

bool is_first_on_line(const std::string &source, size_t at) {
    const size_t start = source.rfind('\n', at) + 1;
    return source.find_first_not_of(" \t", start) == at;
}

/* What a statement needs in front of it may come from a statement inside of it. */
bool is_or_is_within(const Mapped &line, const Mapped &part) {
    return line.begin >= part.begin && line.kind != FUNCTION_LINES;
}

/* The line below a comment, without ends and tests that returns above it need. */
Mapped below_comment(const MappedText &text, const Mapped &comment) {
    auto line = text.by_line.find(comment.last + 1);
    static const std::regex of_return(R"( *(end if;|else|if qxrp_\d+ = 0 then))");
    const auto is_of_return = [&] {
        return line->second.begin < comment.begin &&
               std::regex_match(text.lines[line->first], of_return);
    };
    while (line != text.by_line.end() && is_of_return()) line++;
    return line == text.by_line.end() ? Mapped{} : line->second;
}

/* Which of the parts are comments that stand above a function, or after its head as help text. */
std::vector<bool> comments_of_functions(const MappedText &text, const std::string &source) {
    std::vector<bool> are_of_functions(text.parts.size());
    for (size_t i = 1; i < text.parts.size(); i++) {
        const Mapped &before = text.parts[i - 1];
        const bool follows = before.kind == FUNCTION_LINES || are_of_functions[i - 1];
        are_of_functions[i] =
            follows && text.parts[i].kind == COMMENT_LINES &&
            between(source, before.end, text.parts[i].begin) != Between::EMPTY_LINE;
    }
    for (size_t i = text.parts.size(); i-- > 1;)
        if (text.parts[i].kind == FUNCTION_LINES || are_of_functions[i])
            if (text.parts[i - 1].kind == COMMENT_LINES) are_of_functions[i - 1] = true;
    return are_of_functions;
}

/* Also in a handler, which is put as comments. */
bool is_empty_line(const std::string &line) { return line.find_first_not_of("# ") == line.npos; }

/* Comments stand above what they stand above in the source, and empty lines in front of them are
 * kept; at heads of blocks there are none. */
TEST(Generated, comments_stay_where_they_are) {
    for_programs({KINDS[0], KINDS[1], KINDS[2]}, [](const Program &program, unsigned seed) {
        const Writing writing{seed, true, false, false, false, true, "\n"};
        const std::string source = written(program, writing);
        const MappedText text = mapped_text(source);
        const std::vector<bool> are_of_functions = comments_of_functions(text, source);
        for (size_t i = 1; i < text.parts.size(); i++) {
            const Mapped &before = text.parts[i - 1];
            const Mapped &part = text.parts[i];
            const Between gap = between(source, before.end, part.begin);
            const bool is_remark = before.kind == COMMENT_LINES && !are_of_functions[i - 1] &&
                                   is_first_on_line(source, before.begin);
            const bool is_above = is_remark && gap == Between::NOTHING && part.kind != END_LINES;
            const bool is_head = before.kind == HEAD_LINES || before.kind == FUNCTION_LINES ||
                                 before.kind == GAP_LINES;
            const bool is_apart = part.kind == COMMENT_LINES && !are_of_functions[i] &&
                                  gap == Between::EMPTY_LINE && !is_head;
            ASSERT_TRUE(!is_above || is_or_is_within(below_comment(text, before), part))
                << source.substr(before.begin);
            ASSERT_TRUE(!is_apart || is_empty_line(text.lines[part.first - 1]))
                << source.substr(part.begin);
        }
    });
}

/* Whether "f1" is in a text, and not only "f12". */
bool has_call(const std::string &text, const std::string &call) {
    size_t at = text.find(call);
    while (at != std::string::npos && isdigit(static_cast<unsigned char>(text[at + call.size()])))
        at = text.find(call, at + 1);
    return at != std::string::npos;
}

TEST(Generated, calls_and_literals_are_in_the_translation) {
    for_programs({KINDS[0], KINDS[1], KINDS[2]}, [](const Program &program, unsigned) {
        const std::string text = run_matlab(written(program, {})).text.value();
        for (const std::string &call : program.calls)
            ASSERT_TRUE(has_call(text, call)) << call << "\n" << text;
        for (const std::string &literal : program.literals)
            ASSERT_NE(text.find(literal), std::string::npos) << literal << "\n" << text;
    });
}

TEST(Generated, calls_are_offered_once_and_innermost_first) {
    for_programs({KINDS[0], KINDS[1]}, [](const Program &program, unsigned) {
        StandInHost host;
        host.record_calls();
        run_matlab(host, written(program, {}));
        Texts names;
        Texts called;
        for (const std::string &question : host.take_calls()) {
            static const std::regex form("(TranslateName|TranslateFunction)\\((f\\d+)\\b.*");
            std::smatch found;
            if (std::regex_match(question, found, form))
                (found[1] == "TranslateName" ? names : called).push_back(found[2]);
        }
        if (!program.is_in_order) sort_by_number(names);
        EXPECT_EQ(names, program.calls);
        std::sort(called.begin(), called.end());
        EXPECT_EQ(std::unique(called.begin(), called.end()), called.end());
    });
}

}  // namespace

}  // namespace mtranslate
