/* Messages as JSON Lines. */
#include <nlohmann/json.hpp>
#include <ostream>

#include "cli/messages/message_writer.h"

namespace mtranslate {

namespace {

using Json = nlohmann::ordered_json;

/* Bytes that are no UTF-8 become the replacement character. */
std::string line_of(const Json &json) {
    return json.dump(-1, ' ', false, Json::error_handler_t::replace) + '\n';
}

void add_place(Json &json, const Diagnostic &diagnostic) {
    if (diagnostic.line == 0) return;
    json["line"] = diagnostic.line;
    if (diagnostic.column == 0) return;
    json["column"] = diagnostic.column;
    json["endColumn"] = diagnostic.end_column;
    json["offset"] = diagnostic.offset;
    json["length"] = diagnostic.length;
}

Json json_of(const Diagnostic &diagnostic) {
    Json json;
    json["severity"] = severity_name(diagnostic.severity);
    if (!diagnostic.code.empty()) {
        json["code"] = diagnostic.code;
        json["name"] = find_message(diagnostic.code)->name;
    }
    json["message"] = diagnostic.text;
    if (!diagnostic.operands.empty()) json["operands"] = diagnostic.operands;
    if (!diagnostic.file.empty()) json["file"] = diagnostic.file;
    add_place(json, diagnostic);
    if (diagnostic.calling_line > 0)
        json["calledFrom"] = {{"file", diagnostic.calling_file}, {"line", diagnostic.calling_line}};
    return json;
}

class JsonWriter : public MessageWriter {
public:
    explicit JsonWriter(std::ostream &to) : to_(to) {}

    void write(const Diagnostics &diagnostics) override {
        for (const Diagnostic &diagnostic : diagnostics) to_ << line_of(json_of(diagnostic));
        to_.flush();
    }

private:
    std::ostream &to_;
};

}  // namespace

std::unique_ptr<MessageWriter> make_json_writer(std::ostream &to) {
    return std::make_unique<JsonWriter>(to);
}

}  // namespace mtranslate
