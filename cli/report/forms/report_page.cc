/* Reports as a page: the files of page/ with the report's JSON, and the texts of files in packs of
 * their own, which the page opens when they are wanted. */
#include "cli/files/files.h"
#include "cli/report/facts/details.h"
#include "cli/report/forms/report_json.h"
#include "cli/report/forms/statistics_json.h"
#include "cli/report/packed.h"
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
Json short_map(const LineMap &map) {
    Json json = Json::array();
    for (const MappedLines &lines : map)
        if (lines.file.empty())
            json.push_back(
                {lines.line, lines.end_line, lines.first, lines.last, name_of_kind(lines.kind)});
    return json;
}

/* Null where the source is there no more, or may not be shown. Throws FileError where it cannot be
 * read again. */
Json texts_of(const ReportFile &file) {
    if (file.state == FileState::Failed) return nullptr;
    const auto source = read_file_if_there(file.path);
    if (!source) return nullptr;
    Json texts = {{"source", readable(*source)}};
    FileDetails details = unpacked_details(file.details);
    auto &translation = details.translation;
    if (!translation && !file.output.empty()) translation = read_file_if_there(file.output);
    if (!translation) return texts;
    texts["translation"] = readable(*translation);
    texts["map"] = short_map(details.map);
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

    void write(const Sink &to) const {
        for (std::size_t i = 0; i < packs_.size(); ++i)
            to("<script type=\"text/plain\" id=\"pack-" + std::to_string(i) + "\">" +
               base64(packs_[i]) + "</script>\n");
    }
    /* The numbers of the pack and of the text in it; null where there is none. */
    const Json &place(std::size_t file) const { return places_[file]; }

private:
    void add(std::size_t file, const Json &texts) {
        if (texts.is_null() || bytes_ > MOST_BYTES_OF_TEXTS) return;
        places_[file] = {packs_.size(), count_};
        text_.add(count_ == 0 ? "[" : ",");
        text_.add(text_of(texts));
        ++count_;
        if (text_.size() > BYTES_OF_PACK) close();
    }

    void close() {
        text_.add("]");
        packs_.push_back(text_.take());
        bytes_ += packs_.back().size() / 3 * 4;
        count_ = 0;
    }

    std::vector<Json> places_;
    std::vector<std::string> packs_;
    PackedText text_;
    std::size_t bytes_ = 0; /* of the packs in the page */
    std::size_t count_ = 0; /* of the texts in the pack under way */
};

/* The report as the page reads it: without maps, which go with the texts. Its head takes much
 * memory while it is made, and so do the packs from then on. */
void add_head(const Report &report, PackedText &packed) {
    std::string text = text_of(page_head_json(report));
    text.pop_back();
    packed.add(text + ",\"files\":[");
}

void add_files(const Report &report, const Packs &packs, PackedText &packed) {
    for (std::size_t i = 0; i < report.files.size(); ++i) {
        Json file = file_json(report.files[i], nullptr);
        if (!packs.place(i).is_null()) file["texts"] = packs.place(i);
        if (i > 0) packed.add(",");
        packed.add(text_of(file));
    }
    packed.add("]}");
}

void write_scripts(const Sink &to) {
    for (const std::string_view script :
         {elements_js, tables_js, places_js, call_graph_js, source_view_js, files_js, views_js}) {
        to(script);
        to("\n");
    }
}

/* Writes the page with each of its marks replaced by a text. */
void fill(std::string_view page, const std::map<std::string_view, Pieces> &texts, const Sink &to) {
    while (!page.empty()) {
        const std::size_t begin = page.find('@');
        const std::size_t end = page.find('@', begin + 1);
        if (end == page.npos) return to(page);
        const auto text = texts.find(page.substr(begin + 1, end - begin - 1));
        to(page.substr(0, text == texts.end() ? end : begin));
        if (text != texts.end()) text->second(to);
        page.remove_prefix(text == texts.end() ? end : end + 1);
    }
}

}  // namespace

void write_page(const Report &report, const Sink &to) {
    PackedText packed_report;
    add_head(report, packed_report);
    const Packs packs(report);
    add_files(report, packs, packed_report);
    const std::string text = base64(packed_report.take());
    const auto styles = [](const Sink &sink) {
        sink(palette_css);
        sink(page_css);
    };
    fill(page_html,
         {{"STYLE", styles},
          {"REPORT", [&](const Sink &sink) { sink(text); }},
          {"TEXTS", [&](const Sink &sink) { packs.write(sink); }},
          {"UNPACK", [](const Sink &sink) { sink(unpack_js); }},
          {"SCRIPTS", write_scripts}},
         to);
}

}  // namespace mtranslate
