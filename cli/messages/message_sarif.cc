/* Messages as a log of the Static Analysis Results Interchange Format, version 2.1.0. */
#include <algorithm>
#include <nlohmann/json.hpp>
#include <ostream>
#include <string>

#include "cli/messages/explain.h"
#include "cli/messages/message_writer.h"
#include "cli/messages/pages.h"
#include "cli/support/version.h"

namespace mtranslate {

namespace {

using Json = nlohmann::ordered_json;

const char *level_of(MessageSeverity severity) {
    if (severity == SEVERITY_NOTE) return "note";
    return severity == SEVERITY_WARNING ? "warning" : "error";
}

Json rule_of(const MessageRow &row) {
    return {{"id", row.code},
            {"name", row.name},
            {"shortDescription", {{"text", general_text(row)}}},
            {"fullDescription", {{"text", row.explanation}}},
            {"help", {{"text", row.help}}},
            {"helpUri", uri_of_explanation(row)},
            {"defaultConfiguration", {{"level", level_of(severity_of(row))}}}};
}

Json driver() {
    Json rules = Json::array();
    for (const MessageRow *row : message_rows()) rules.push_back(rule_of(*row));
    return {{"name", "mtranslate"},
            {"version", VERSION},
            {"informationUri", pages_uri()},
            {"rules", std::move(rules)}};
}

Json location(const std::string &file, Json region) {
    Json physical = {{"artifactLocation", {{"uri", uri_of(file)}}}};
    if (!region.empty()) physical["region"] = std::move(region);
    return {{"physicalLocation", std::move(physical)}};
}

Json region_of(const Diagnostic &diagnostic) {
    Json region;
    if (diagnostic.line > 0) region["startLine"] = diagnostic.line;
    if (diagnostic.column > 0) {
        region["startColumn"] = diagnostic.column;
        region["endColumn"] = diagnostic.end_column;
    }
    return region;
}

Json result_of(const Diagnostic &diagnostic) {
    Json result;
    if (!diagnostic.code.empty()) {
        result["ruleId"] = diagnostic.code;
        const auto rows = message_rows();
        result["ruleIndex"] = std::ranges::find(rows, find_message(diagnostic.code)) - rows.begin();
    }
    result["level"] = level_of(diagnostic.severity);
    result["message"] = {{"text", diagnostic.text}};
    if (!diagnostic.file.empty())
        result["locations"] = Json::array({location(diagnostic.file, region_of(diagnostic))});
    if (diagnostic.calling_line > 0) {
        Json caller = location(diagnostic.calling_file, {{"startLine", diagnostic.calling_line}});
        caller["message"] = {{"text", "the file is called here"}};
        result["relatedLocations"] = Json::array({std::move(caller)});
    }
    return result;
}

/* Of what the tool itself failed in. */
Json invocation_of(Json notifications) {
    return {{"executionSuccessful", false},
            {"toolExecutionNotifications", std::move(notifications)}};
}

/* One object, written at the end. */
class SarifWriter : public MessageWriter {
public:
    explicit SarifWriter(std::ostream &to) : to_(to) {}

    void write(const Diagnostics &diagnostics) override {
        for (const Diagnostic &diagnostic : diagnostics)
            (diagnostic.file.empty() ? failures_ : results_).push_back(result_of(diagnostic));
    }

    void finish() override {
        Json run = {{"tool", {{"driver", driver()}}},
                    {"columnKind", "unicodeCodePoints"},
                    {"results", std::move(results_)}};
        if (!failures_.empty())
            run["invocations"] = Json::array({invocation_of(std::move(failures_))});
        const Json log = {{"$schema", "https://json.schemastore.org/sarif-2.1.0.json"},
                          {"version", "2.1.0"},
                          {"runs", Json::array({std::move(run)})}};
        to_ << log.dump(2, ' ', false, Json::error_handler_t::replace) << '\n' << std::flush;
    }

private:
    std::ostream &to_;
    Json results_ = Json::array();
    Json failures_ = Json::array();
};

}  // namespace

std::unique_ptr<MessageWriter> make_sarif_writer(std::ostream &to) {
    return std::make_unique<SarifWriter>(to);
}

}  // namespace mtranslate
