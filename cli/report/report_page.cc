/* Reports as a page: the files of report_page/ with the report's JSON, and the texts of files, in
 * elements of their own, which the page reads when they are wanted. */
#include <nlohmann/json.hpp>

#include "cli/files/files.h"
#include "cli/report/report.h"
#include "cli/report/statistics_json.h"
#include "cli/support/characters.h"
#include "report_page_texts.h"

namespace mtranslate {

namespace {

using Json = nlohmann::ordered_json;

/* Of sources and translations; a page with more would hardly open. */
constexpr std::size_t MOST_BYTES_OF_TEXTS = 64 << 20;

/* Bytes that are no UTF-8 are taken for Latin-1. */
std::string readable(std::string_view bytes) {
    constexpr std::string_view MARK = "\xEF\xBB\xBF";
    if (bytes.starts_with(MARK)) bytes.remove_prefix(MARK.size());
    std::string text;
    while (!bytes.empty()) {
        const std::size_t length = first_character(bytes).length;
        const auto byte = static_cast<unsigned char>(bytes[0]);
        if (length > 1 || byte < 0x80) {
            text += bytes.substr(0, length);
        } else {
            text += static_cast<char>(0xC0 | (byte >> 6));
            text += static_cast<char>(0x80 | (byte & 0x3F));
        }
        bytes.remove_prefix(length);
    }
    return text;
}

/* In a script element nothing may look like markup. */
std::string in_element(const Json &json) {
    std::string text;
    for (const char c : json.dump(-1, ' ', false, Json::error_handler_t::replace)) {
        if (c == '<')
            text += "\\u003c";
        else
            text += c;
    }
    return text;
}

/* What the page needs of it: lines alone, of the file itself. */
Json map_of(const ReportFile &file) {
    Json map = Json::array();
    for (const MappedLines &lines : file.facts.map)
        if (lines.file.empty())
            map.push_back(
                {lines.line, lines.end_line, lines.first, lines.last, name_of_kind(lines.kind)});
    return map;
}

/* The report without what the texts have. */
Json report_of(const Report &report) {
    Json json = Json::parse(report_json(report));
    for (Json &file : json["files"]) file.erase("map");
    return json;
}

/* Null where the source cannot be read again. */
Json texts_of(const ReportFile &file) {
    const auto source = read_regular_file(file.path);
    if (!source) return nullptr;
    Json texts = {{"source", readable(*source)}};
    auto translation = file.translation;
    if (!translation && !file.output.empty()) translation = read_regular_file(file.output);
    if (!translation) return texts;
    texts["translation"] = readable(*translation);
    texts["map"] = map_of(file);
    return texts;
}

std::string text_elements(const Report &report) {
    std::string elements;
    for (std::size_t i = 0; i < report.files.size(); ++i) {
        const Json texts = texts_of(report.files[i]);
        if (texts.is_null()) continue;
        const std::string text = in_element(texts);
        if (elements.size() + text.size() > MOST_BYTES_OF_TEXTS) continue;
        elements += "<script type=\"application/json\" id=\"text-" + std::to_string(i) + "\">" +
                    text + "</script>\n";
    }
    return elements;
}

/* The page with each of its marks replaced by a text; marks in these texts stay. */
std::string filled(std::string_view page, const std::map<std::string_view, std::string> &texts) {
    std::string filled;
    while (!page.empty()) {
        const std::size_t begin = page.find('@');
        const std::size_t end = page.find('@', begin + 1);
        if (end == page.npos) return filled.append(page);
        const auto text = texts.find(page.substr(begin + 1, end - begin - 1));
        filled += page.substr(0, begin);
        filled += text == texts.end() ? page.substr(begin, end - begin) : text->second;
        page.remove_prefix(text == texts.end() ? end : end + 1);
    }
    return filled;
}

}  // namespace

std::string report_page(const Report &report) {
    std::string scripts;
    for (const std::string_view script :
         {elements_js, tables_js, call_graph_js, source_view_js, views_js})
        scripts.append(script) += '\n';
    return filled(page_html, {{"STYLE", std::string(page_css)},
                              {"REPORT", in_element(report_of(report))},
                              {"TEXTS", text_elements(report)},
                              {"SCRIPTS", scripts}});
}

}  // namespace mtranslate
