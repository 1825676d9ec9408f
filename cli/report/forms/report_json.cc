/* Reports as JSON: docs/report.schema.json. */
#include "cli/report/forms/report_json.h"

#include <algorithm>

#include "cli/files/files.h"
#include "cli/messages/explain.h"
#include "cli/report/forms/assess.h"
#include "cli/report/forms/statistics_json.h"

namespace mtranslate {

using Json = nlohmann::ordered_json;

static void to_json(Json &json, const ReportPlace &place) {
    json = {{"file", place.file}, {"line", place.line}, {"column", place.column}};
}

static void to_json(Json &json, const UnresolvedFunction &function) {
    json = {{"name", function.name},   {"count", function.count},
            {"files", function.files}, {"first", function.first},
            {"alone", function.alone}, {"classOnly", function.is_class_only}};
}

static void to_json(Json &json, const MessageKind &kind) {
    json = Json::object();
    if (!kind.code.empty()) json["code"] = kind.code;
    if (const MessageRow *row = find_message(kind.code)) json["name"] = row->name;
    json["severity"] = severity_name(kind.severity);
    json["count"] = kind.count;
    json["files"] = kind.files;
}

static void to_json(Json &json, const UnassignedName &name) {
    json = {{"name", name.name}, {"code", name.code}, {"place", name.place}};
}

static void to_json(Json &json, const RuleUse &rule) {
    json = {{"title", rule.title}, {"count", rule.count}};
}

namespace {

constexpr const char *FORMAT = "mtranslate report";
constexpr int VERSION_OF_FORMAT = 1;

constexpr const char *STATES[] = {"translated", "gaps", "errors", "failed"};
constexpr const char *CALL_ENDS[] = {"found", "answered", "builtIn", "unresolved", "classOnly"};

Json by_severity(const SeverityCounts &counts) {
    Json json;
    for (const MessageSeverity severity :
         {SEVERITY_ERROR, SEVERITY_GAP, SEVERITY_WARNING, SEVERITY_NOTE})
        json[severity_name(severity)] = counts[severity];
    return json;
}

/* A message about the file itself does not name it. */
Json json_of(const Diagnostic &diagnostic, const std::string &path) {
    Json json = {{"severity", severity_name(diagnostic.severity)}};
    if (!diagnostic.code.empty()) json["code"] = diagnostic.code;
    json["message"] = diagnostic.text;
    if (!diagnostic.operands.empty()) json["operands"] = diagnostic.operands;
    if (diagnostic.file != path) json["file"] = diagnostic.file;
    if (diagnostic.line > 0) json["line"] = diagnostic.line;
    if (diagnostic.column == 0) return json;
    json["column"] = diagnostic.column;
    json["endColumn"] = diagnostic.end_column;
    return json;
}

template <std::size_t N>
Json by_name(const char *const (&names)[N], const std::size_t (&counts)[N]) {
    Json json;
    for (std::size_t i = 0; i < N; ++i) json[names[i]] = counts[i];
    return json;
}

Json json_of(const ReportTotals &totals) {
    return {{"files", totals.files},
            {"states", by_name(STATES, totals.states)},
            {"functions", totals.functions},
            {"lines", totals.lines},
            {"bytes", totals.bytes},
            {"statements",
             {{"all", totals.statements},
              {"withoutMessage", totals.without_message},
              {"waiting", totals.waiting}}},
            {"comments", {{"all", totals.comments}, {"kept", totals.comments_kept}}},
            {"calls", by_name(CALL_ENDS, totals.calls)},
            {"messages", by_severity(totals.messages)}};
}

/* The place of the text among those of a table. */
template <std::size_t N>
std::size_t place_in(const char *const (&table)[N], const std::string &text) {
    const auto *found = std::find(std::begin(table), std::end(table), text);
    if (found == std::end(table)) throw FileError("'" + text + "' is not known");
    return static_cast<std::size_t>(found - table);
}

/* Those of a message with the code. */
std::size_t count_operands(const std::string &code) {
    const MessageRow *row = find_message(code);
    return row ? row->operand_count : 0;
}

Diagnostic diagnostic_from(const Json &json, const std::string &path) {
    static constexpr const char *severities[] = {"error", "gap", "warning", "note"};
    Diagnostic diagnostic;
    diagnostic.code = json.value("code", "");
    diagnostic.severity =
        static_cast<MessageSeverity>(place_in(severities, json.at("severity").get<std::string>()));
    json.at("message").get_to(diagnostic.text);
    diagnostic.operands = json.value("operands", diagnostic.operands);
    if (diagnostic.operands.size() != count_operands(diagnostic.code))
        throw FileError("a message of " + diagnostic.code + " has other operands");
    diagnostic.file = json.value("file", path);
    diagnostic.line = json.value("line", 0);
    diagnostic.column = json.value("column", 0);
    diagnostic.end_column = json.value("endColumn", 0);
    return diagnostic;
}

Json advice_of(const Report &report, const ReportSummary &summary) {
    Json advice = Json::array();
    for (const Candidate &candidate : candidates(report, summary))
        advice.push_back({{"name", candidate.function->name}, {"completed", candidate.completed}});
    return advice;
}

/* What the codes mean that occur, by code. */
Json explanations_of(const ReportSummary &summary) {
    Json explanations = Json::object();
    for (const MessageKind &kind : summary.messages)
        if (const auto text = explanation(kind.code); !kind.code.empty() && text)
            explanations[kind.code] = *text;
    return explanations;
}

}  // namespace

Json file_json(const ReportFile &file, const LineMap *map) {
    Json json = {{"path", file.path}};
    if (!file.output.empty()) json["output"] = file.output;
    json["state"] = STATES[static_cast<std::size_t>(file.state)];
    json.update(Json(file.facts));
    if (map) json["map"] = *map;
    json["messageCounts"] = by_severity(count_severities(file.diagnostics));
    json["messages"] = Json::array();
    for (const Diagnostic &diagnostic : file.diagnostics)
        json["messages"].push_back(json_of(diagnostic, file.path));
    json["rules"] = Json::object();
    for (const auto &[title, count] : file.rules_used) json["rules"][title] = count;
    return json;
}

ReportFile report_file_of(const Json &json) {
    ReportFile file;
    json.get_to(file.facts);
    json.at("path").get_to(file.path);
    file.output = json.value("output", "");
    file.state = static_cast<FileState>(place_in(STATES, json.at("state").get<std::string>()));
    for (const Json &message : json.at("messages"))
        file.diagnostics.push_back(diagnostic_from(message, file.path));
    for (const auto &[title, count] : json.at("rules").items())
        file.rules_used[title] = count.get<std::size_t>();
    for (const CallFact &call : file.facts.calls)
        if (call.in < -1 || call.in >= static_cast<int>(file.facts.functions.size()))
            throw FileError("a call is in no function of its file");
    return file;
}

void check_format(const Json &head) {
    if (head.at("format") != FORMAT) throw FileError("it is another format");
    if (head.at("version") != VERSION_OF_FORMAT) throw FileError("it is of another version");
}

Json head_json(const Report &report, const ReportSummary &summary) {
    return {{"format", FORMAT},
            {"version", VERSION_OF_FORMAT},
            {"interrupted", report.is_interrupted},
            {"totals", json_of(summary.totals)},
            {"unresolved", summary.unresolved},
            {"messages", summary.messages},
            {"unassigned", summary.unassigned},
            {"rules", summary.rules}};
}

Json page_head_json(const Report &report) {
    const ReportSummary summary = summarise(report);
    Json head = head_json(report, summary);
    head["advice"] = advice_of(report, summary);
    head["explanations"] = explanations_of(summary);
    head["sources"] = report.shows_sources;
    return head;
}

std::string text_of(const Json &json, int indent) {
    return json.dump(indent, ' ', false, Json::error_handler_t::replace);
}

}  // namespace mtranslate
