/* Reports in files of JSON, one of their files after the other: such a text is many times as large
 * as the report. */
#include <fstream>

#include "cli/files/files.h"
#include "cli/report/facts/details.h"
#include "cli/report/forms/report_json.h"
#include "cli/report/forms/statistics_json.h"

namespace mtranslate {

using Json = nlohmann::ordered_json;

namespace {

/* Takes the files out of the JSON as they are parsed. */
class FilesReader {
public:
    explicit FilesReader(Report &report) : report_(report) {}

    /* For the parser; false where the value is no longer needed. */
    bool take(int depth, Json::parse_event_t event, Json &value) {
        using Event = Json::parse_event_t;
        if (depth == 1 && event == Event::key) is_in_files_ = value == "files";
        const bool is_file = is_in_files_ && depth == 2 && event == Event::object_end;
        if (is_file) add(value);
        return !is_file;
    }

    /* Throws what was wrong with the first bad file. */
    void finish() const {
        if (failure_) std::rethrow_exception(failure_);
    }

private:
    void add(const Json &json) {
        if (failure_) return;
        try {
            ReportFile file = report_file_of(json);
            if (json.contains("map")) file.details = packed({json["map"].get<LineMap>(), {}});
            report_.files.push_back(std::move(file));
        } catch (...) {
            failure_ = std::current_exception();
        }
    }

    Report &report_;
    bool is_in_files_ = false;
    std::exception_ptr failure_;
};

Report report_from(std::istream &text) {
    Report report;
    FilesReader files(report);
    const Json head = Json::parse(text, [&](int depth, Json::parse_event_t event, Json &value) {
        return files.take(depth, event, value);
    });
    check_format(head);
    head.at("interrupted").get_to(report.is_interrupted);
    if (!head.at("files").is_array()) throw FileError("it has no list of files");
    files.finish();
    for (const Json &rule : head.at("rules"))
        report.rules.insert(rule.at("title").get<std::string>());
    return report;
}

}  // namespace

Report read_report(const std::string &path) {
    const Descriptor copy = spool(open_to_read(path).get(), "'" + path + "'");
    std::ifstream text(path_of(copy), std::ios::binary);
    try {
        return report_from(text);
    } catch (const std::exception &error) {
        throw FileError("'" + path + "' is no report of mtranslate: " + error.what());
    }
}

void write_json(const Report &report, const Sink &to) {
    std::string head = text_of(head_json(report, summarise(report)), 1);
    head.resize(head.size() - 2);  // the end of the line and the object
    to(head + ",\n \"files\": [");
    for (const ReportFile &file : report.files) {
        const LineMap map = unpacked_details(file.details).map;
        std::string text = &file == report.files.data() ? "\n  " : ",\n  ";
        for (const char c : text_of(file_json(file, &map), 1)) {
            text += c;
            if (c == '\n') text += "  ";
        }
        to(text);
    }
    to(report.files.empty() ? "]\n}\n" : "\n ]\n}\n");
}

}  // namespace mtranslate
