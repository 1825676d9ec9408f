/* Reports as a page: the files of page/ with the report's JSON, and the texts of files in packs of
 * their own, which the page opens when they are wanted. */
#include "cli/files/files.h"
#include "cli/report/forms/report_json.h"
#include "cli/report/forms/statistics_json.h"
#include "cli/report/page/packed.h"
#include "cli/support/characters.h"
#include "report_page_texts.h"

namespace mtranslate {

namespace {

using Json = nlohmann::ordered_json;

/* Of packed sources and translations; a page with more would hardly open. */
constexpr std::size_t MOST_BYTES_OF_TEXTS = 64 << 20;
/* Of the texts in a pack: more are packed better, fewer are opened sooner. */
constexpr std::size_t BYTES_OF_PACK = 1 << 19;

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

/* What the page needs of it: lines alone, of the file itself. */
Json map_of(const ReportFile &file) {
    Json map = Json::array();
    for (const MappedLines &lines : file.facts.map)
        if (lines.file.empty())
            map.push_back(
                {lines.line, lines.end_line, lines.first, lines.last, name_of_kind(lines.kind)});
    return map;
}

/* Null where the source is there no more, or may not be shown. Throws FileError where it cannot be
 * read again. */
Json texts_of(const ReportFile &file) {
    if (file.state == FileState::Failed) return nullptr;
    const auto source = read_file_if_there(file.path);
    if (!source) return nullptr;
    Json texts = {{"source", readable(*source)}};
    auto translation = file.translation;
    if (!translation && !file.output.empty()) translation = read_file_if_there(file.output);
    if (!translation) return texts;
    texts["translation"] = readable(*translation);
    texts["map"] = map_of(file);
    return texts;
}

/* The packs of texts, each an array in an element, and where each file is in them. */
class Packs {
public:
    explicit Packs(const Report &report) : places_(report.files.size()) {
        if (!report.shows_sources) return;
        for (std::size_t i = 0; i < report.files.size(); ++i) add(i, texts_of(report.files[i]));
        if (count_ > 0) close();
    }

    const std::string &elements() const { return elements_; }
    /* The numbers of the pack and of the text in it; null where there is none. */
    const Json &place(std::size_t file) const { return places_[file]; }

private:
    void add(std::size_t file, const Json &texts) {
        if (texts.is_null() || elements_.size() > MOST_BYTES_OF_TEXTS) return;
        places_[file] = {pack_, count_};
        text_.add(count_ == 0 ? "[" : ",");
        text_.add(text_of(texts));
        ++count_;
        if (text_.size() > BYTES_OF_PACK) close();
    }

    void close() {
        text_.add("]");
        elements_ += "<script type=\"text/plain\" id=\"pack-" + std::to_string(pack_) + "\">" +
                     text_.take() + "</script>\n";
        ++pack_;
        count_ = 0;
    }

    std::vector<Json> places_;
    std::string elements_;
    PackedText text_;
    std::size_t pack_ = 0;
    std::size_t count_ = 0; /* of the texts in the pack */
};

/* The report as the page reads it: without maps, which go with the texts. */
std::string packed_report(const Report &report, const Packs &packs) {
    PackedText packed;
    std::string text = text_of(page_head_json(report));
    text.pop_back();
    packed.add(text + ",\"files\":[");
    for (std::size_t i = 0; i < report.files.size(); ++i) {
        Json file = file_json(report.files[i]);
        file.erase("map");
        if (!packs.place(i).is_null()) file["texts"] = packs.place(i);
        packed.add((i == 0 ? "" : ",") + text_of(file));
    }
    packed.add("]}");
    return packed.take();
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
    const Packs packs(report);
    std::string scripts;
    for (const std::string_view script :
         {elements_js, tables_js, places_js, call_graph_js, source_view_js, files_js, views_js})
        scripts.append(script) += '\n';
    return filled(page_html, {{"STYLE", std::string(palette_css).append(page_css)},
                              {"REPORT", packed_report(report, packs)},
                              {"TEXTS", packs.elements()},
                              {"UNPACK", std::string(unpack_js)},
                              {"SCRIPTS", scripts}});
}

}  // namespace mtranslate
