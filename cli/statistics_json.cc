/* Members in the words of the report. */
#include "cli/statistics_json.h"

#include <nlohmann/json.hpp>

namespace mtranslate {

using Json = nlohmann::ordered_json;

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
