/* Members in the words of the report. */
#include "cli/report/forms/statistics_json.h"

#include <algorithm>
#include <nlohmann/json.hpp>
#include <string_view>

#include "cli/files/files.h"

namespace mtranslate {

using Json = nlohmann::ordered_json;

/* By the numbers MTRANSLATE_LINES_... */
static constexpr const char *LINE_KINDS[] = {"statement", "head",    "end",     "comment",
                                             "function",  "prelude", "results", "gap"};

NLOHMANN_JSON_SERIALIZE_ENUM(CallEnd, {{CallEnd::Unresolved, "unresolved"},
                                       {CallEnd::Found, "found"},
                                       {CallEnd::Answered, "answered"},
                                       {CallEnd::BuiltIn, "builtIn"},
                                       {CallEnd::ClassOnly, "classOnly"}})

static void to_json(Json &json, const FunctionFact &function) {
    json = {{"name", function.name}, {"line", function.line}};
}

static void from_json(const Json &json, FunctionFact &function) {
    json.at("name").get_to(function.name);
    json.at("line").get_to(function.line);
}

static void to_json(Json &json, const WaitingFact &waiting) {
    json = {{"names", waiting.names}, {"statements", waiting.statements}};
}

static void from_json(const Json &json, WaitingFact &waiting) {
    json.at("names").get_to(waiting.names);
    json.at("statements").get_to(waiting.statements);
}

static void to_json(Json &json, const CallFact &call) {
    json = Json::object();
    if (call.in >= 0) json["in"] = call.in;
    json["name"] = call.name;
    json["end"] = call.end;
    if (!call.target.empty()) json["target"] = call.target;
    json["count"] = call.count;
    json["line"] = call.line;
    json["column"] = call.column;
}

static void from_json(const Json &json, CallFact &call) {
    call.in = json.value("in", -1);
    call.target = json.value("target", "");
    json.at("name").get_to(call.name);
    json.at("end").get_to(call.end);
    json.at("count").get_to(call.count);
    json.at("line").get_to(call.line);
    json.at("column").get_to(call.column);
}

const char *name_of_kind(std::int32_t kind) { return LINE_KINDS[kind]; }

void to_json(Json &json, const MappedLines &lines) {
    json = {{"kind", name_of_kind(lines.kind)}};
    if (!lines.file.empty()) json["file"] = lines.file;
    json["line"] = lines.line;
    json["column"] = lines.column;
    json["endLine"] = lines.end_line;
    json["endColumn"] = lines.end_column;
    json["first"] = lines.first;
    json["last"] = lines.last;
}

void from_json(const Json &json, MappedLines &lines) {
    const auto *kind =
        std::find(std::begin(LINE_KINDS), std::end(LINE_KINDS), json.at("kind").get<std::string>());
    if (kind == std::end(LINE_KINDS)) throw FileError("a map has an unknown kind");
    lines.kind = static_cast<std::int32_t>(kind - LINE_KINDS);
    lines.file = json.value("file", "");
    json.at("line").get_to(lines.line);
    json.at("column").get_to(lines.column);
    json.at("endLine").get_to(lines.end_line);
    json.at("endColumn").get_to(lines.end_column);
    json.at("first").get_to(lines.first);
    json.at("last").get_to(lines.last);
}

void to_json(Json &json, const FileFacts &facts) {
    json = {{"lines", facts.lines},
            {"bytes", facts.bytes},
            {"functions", facts.functions},
            {"statements", {{"all", facts.statements}, {"withoutMessage", facts.without_message}}},
            {"waiting", facts.waiting},
            {"comments", {{"all", facts.comments}, {"kept", facts.comments_kept}}},
            {"calls", facts.calls}};
}

void from_json(const Json &json, FileFacts &facts) {
    json.at("lines").get_to(facts.lines);
    json.at("bytes").get_to(facts.bytes);
    json.at("functions").get_to(facts.functions);
    json.at("statements").at("all").get_to(facts.statements);
    json.at("statements").at("withoutMessage").get_to(facts.without_message);
    json.at("waiting").get_to(facts.waiting);
    json.at("comments").at("all").get_to(facts.comments);
    json.at("comments").at("kept").get_to(facts.comments_kept);
    json.at("calls").get_to(facts.calls);
}

}  // namespace mtranslate
