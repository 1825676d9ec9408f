/* Records, field by field. Enumerations are written as words; their order is that of the header. */
#include "web/package/source/result_json.h"

#include <array>
#include <map>
#include <string>

namespace mtranslate::web {

namespace {

constexpr std::array STATUSES{"done",      "stopped", "unreadable", "too-large",
                              "no-memory", "invalid", "refused"};
constexpr std::array SEVERITIES{"error", "gap", "warning", "note"};
constexpr std::array FILE_KINDS{"given", "regular", "pipe", "device", "other"};
constexpr std::array LINES{"statement", "head",    "end",    "comment",
                           "function",  "prelude", "result", "gap"};
constexpr std::array CALL_ENDS{"own", "file", "host", "language", "class", "unknown"};
constexpr std::array TOKEN_KINDS{"name",      "number",  "text",  "keyword", "operator", "bracket",
                                 "separator", "comment", "field", "command", "bad"};
constexpr std::array NAME_KINDS{"function", "variable", "parameter",
                                "output",   "global",   "persistent"};

std::int64_t to_number(std::size_t count) { return static_cast<std::int64_t>(count); }

class Writer {
public:
    explicit Writer(JsonText &json) : json_(json) {}

    void write(const mTranslateProgramResult &result, const RuleAnswers &rules,
               const std::string &report) {
        json_.open('{').key("status");
        write_word(STATUSES, result.status);
        json_.key("failure").string_or_null(result.failure);
        write_list("messages", result.messages, result.message_count);
        write_list("files", result.files, result.file_count);
        json_.key("end");
        write(result.end);
        json_.key("needsLibrary").truth(result.needs_library != 0);
        write_list("pieces", result.pieces, result.piece_count);
        write_list("functions", result.functions, result.function_count);
        write_list("statements", result.statements, result.statement_count);
        write_list("calls", result.calls, result.call_count);
        write_list("names", result.names, result.name_count);
        write_list("comments", result.comments, result.comment_count);
        write_list("tokens", result.tokens, result.token_count);
        json_.key("statistics");
        write(result.statistics);
        json_.key("tree").string_or_null(result.tree).key("values").string_or_null(result.values);
        write_rules(rules);
        json_.key("report").json(report.empty() ? "null" : report);
        json_.close('}');
    }

    void write_message_kinds() {
        std::size_t count = 0;
        const mTranslateMessageKind *const *kinds = mTranslateMessageKinds(&count);
        json_.open('[');
        for (std::size_t i = 0; i < count; ++i) write(kinds[i]);
        json_.close(']');
    }

private:
    template <std::size_t COUNT>
    void write_word(const std::array<const char *, COUNT> &words, int number) {
        json_.string(words.at(static_cast<std::size_t>(number)));
    }

    void write(const mTranslateProgramRange *range) {
        if (!range) {
            json_.null();
            return;
        }
        json_.open('{').key("file").string_or_null(range->file);
        json_.key("begin").number(range->begin).key("end").number(range->end);
        json_.key("line").number(range->line).key("column").number(range->column);
        json_.key("columnUtf16").number(range->column_utf16);
        json_.key("columnCharacters").number(range->column_characters);
        json_.key("endLine").number(range->end_line).key("endColumn").number(range->end_column);
        json_.key("endColumnUtf16").number(range->end_column_utf16);
        json_.key("endColumnCharacters").number(range->end_column_characters).close('}');
    }

    /* A list of what write is for. */
    template <class Record>
    void write_list(const char *key, const Record *const *records, std::size_t count) {
        json_.key(key).open('[');
        for (std::size_t i = 0; i < count; ++i) write(records[i]);
        json_.close(']');
    }

    void write(const char *text) { json_.string(text); }

    void write(const mTranslateProgramMessage *message) {
        json_.open('{').key("severity");
        write_word(SEVERITIES, message->severity);
        json_.key("code").string(message->code).key("name").string(message->name);
        json_.key("text").string(message->text).key("help").string(message->help);
        write_list("operands", message->operands, message->operand_count);
        json_.key("place");
        write(message->place);
        json_.key("sourceLine");
        if (message->source_line)
            json_.string({message->source_line, message->source_line_length});
        else
            json_.null();
        json_.key("calledFrom").string_or_null(message->called_from);
        json_.key("calledFromLine").number(message->called_from_line).close('}');
    }

    void write(const mTranslateProgramFile *file) {
        json_.open('{')
            .key("name")
            .string_or_null(file->name)
            .key("path")
            .string_or_null(file->path);
        json_.key("kind");
        write_word(FILE_KINDS, file->kind);
        json_.key("text");
        if (file->text)
            json_.string({file->text, file->text_length});
        else
            json_.null();
        json_.close('}');
    }

    void write(const mTranslateProgramPiece *piece) {
        json_.open('{').key("kind");
        write_word(LINES, piece->kind);
        json_.key("place");
        write(piece->place);
        json_.key("firstLine").number(piece->first_line);
        json_.key("lastLine").number(piece->last_line).close('}');
    }

    void write(const mTranslateProgramFunction *function) {
        json_.open('{').key("name").string(function->name).key("outer").number(function->outer);
        json_.key("place");
        write(function->place);
        json_.close('}');
    }

    void write(const mTranslateProgramStatement *statement) {
        json_.open('{').key("outer").number(statement->outer);
        json_.key("isRead").truth(statement->is_read != 0);
        json_.key("hasMessage").truth(statement->has_message != 0).key("place");
        write(statement->place);
        json_.close('}');
    }

    void write(const mTranslateProgramCall *call) {
        json_.open('{').key("name").string(call->name).key("end");
        write_word(CALL_ENDS, call->end);
        json_.key("target").string_or_null(call->target);
        json_.key("function").number(call->function).key("statement").number(call->statement);
        json_.key("place");
        write(call->place);
        json_.close('}');
    }

    void write(const mTranslateProgramName *name) {
        json_.open('{').key("text").string(name->text).key("kind");
        write_word(NAME_KINDS, name->kind);
        json_.key("function").number(name->function).key("definition");
        write(name->definition);
        write_list("uses", name->uses, name->use_count);
        json_.close('}');
    }

    void write(const mTranslateProgramComment *comment) {
        json_.open('{').key("isKept").truth(comment->is_kept != 0).key("place");
        write(comment->place);
        json_.close('}');
    }

    void write(const mTranslateProgramToken *token) {
        json_.open('{').key("kind");
        write_word(TOKEN_KINDS, token->kind);
        json_.key("place");
        write(token->place);
        json_.close('}');
    }

    void write(const mTranslateProgramStatistics *statistics) {
        if (!statistics) {
            json_.null();
            return;
        }
        json_.open('{').key("lines").number(statistics->lines);
        json_.key("bytes")
            .number(statistics->bytes)
            .key("statements")
            .number(statistics->statements);
        json_.key("withoutMessage").number(statistics->without_message);
        json_.key("comments").number(statistics->comments);
        json_.key("commentsKept").number(statistics->comments_kept).close('}');
    }

    void write(const mTranslateProgramEnd *end) {
        if (!end) {
            json_.null();
            return;
        }
        json_.open('{').key("path").string_or_null(end->path).key("line").number(end->line);
        json_.key("offset").number(static_cast<std::int64_t>(end->offset)).close('}');
    }

    void write(const mTranslateMessageKind *kind) {
        json_.open('{').key("severity");
        write_word(SEVERITIES, kind->severity);
        json_.key("code").string(kind->code).key("name").string(kind->name);
        json_.key("form").string(kind->form).key("operandCount").number(kind->operand_count);
        json_.key("explanation").string(kind->explanation);
        json_.key("example").string_or_null(kind->example);
        json_.key("help").string(kind->help).close('}');
    }

    /* How often a function is called that no rule answers, by the numbers of arguments. */
    void write_unanswered(const std::map<std::string, UnansweredCalls> &unanswered) {
        json_.key("unanswered").open('[');
        for (const auto &[name, calls] : unanswered) {
            json_.open('{').key("name").string(name).key("handles").number(
                to_number(calls.handles));
            json_.key("calls").open('[');
            for (const auto &[arguments, count] : calls.by_arguments)
                json_.open('{')
                    .key("arguments")
                    .number(to_number(arguments))
                    .key("count")
                    .number(to_number(count))
                    .close('}');
            json_.close(']').close('}');
        }
        json_.close(']');
    }

    void write_rules(const RuleAnswers &rules) {
        json_.key("rules").open('{').key("used").open('[');
        for (const auto &[title, count] : rules.used()) {
            json_.open('{').key("rule").string(title);
            json_.key("count").number(to_number(count)).close('}');
        }
        json_.close(']');
        write_unanswered(rules.unanswered());
        json_.close('}');
    }

    JsonText &json_;
};

}  // namespace

void write_result(JsonText &json, const mTranslateProgramResult &result, const RuleAnswers &rules,
                  const std::string &report) {
    Writer(json).write(result, rules, report);
}

void write_message_kinds(JsonText &json) { Writer(json).write_message_kinds(); }

}  // namespace mtranslate::web
