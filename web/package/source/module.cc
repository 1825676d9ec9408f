/* The functions that the module exports, and the requests that they take. */
#include <mtranslate_program.h>

#include <algorithm>
#include <cstdint>
#include <exception>
#include <filesystem>
#include <memory>
#include <nlohmann/json.hpp>
#include <string>
#include <string_view>
#include <vector>

#include "cli/config/configuration.h"
#include "cli/files/file_index.h"
#include "web/package/source/json_text.h"
#include "web/package/source/questions.h"
#include "web/package/source/result_json.h"
#include "web/package/source/tree_report.h"

namespace mtranslate::web {

namespace {

using Json = nlohmann::json;

/* What a call gives: JSON, and the host text of a translation. Four words, which the caller reads.
 */
struct Output {
    const char *json = nullptr;
    std::size_t json_length = 0;
    const char *text = nullptr;
    std::size_t text_length = 0;
};

/* The last output with what it points to, until the next call. */
struct Kept {
    std::string json;
    std::unique_ptr<const mTranslateProgramResult, void (*)(const mTranslateProgramResult *)>
        result{nullptr, mTranslateProgramRelease};
    Output output;
};
Kept Last;

const Output *keep(std::string json) {
    Last.json = std::move(json);
    Last.output = {Last.json.data(), Last.json.size()};
    if (Last.result) {
        Last.output.text = Last.result->text;
        Last.output.text_length = Last.result->text_length;
    }
    return &Last.output;
}

const Output *keep_error(const char *kind, const char *message) {
    JsonText json;
    json.open('{').key("error").string(kind).key("message").string(message).close('}');
    Last.result.reset();
    return keep(json.release());
}

/* The rules of the last request, which are mostly those of the next. */
Json LastTexts;
Rules LastRules;

/* texts: objects with name and text; the rules of a later one replace those of an earlier one.
 * Throws ConfigurationError. */
const Rules &rules_of(const Json &texts) {
    if (texts == LastTexts) return LastRules;
    Rules rules;
    for (const Json &text : texts)
        rules.add(read_rules_text(text.at("name").get<std::string>(),
                                  text.at("text").get<std::string>()));
    check_reachable(rules);
    LastTexts = texts;
    LastRules = std::move(rules);
    return LastRules;
}

std::vector<mTranslateProgramSource> sources_of(const std::vector<std::string> &names,
                                                const std::vector<std::size_t> &lengths,
                                                const char *texts) {
    std::vector<mTranslateProgramSource> sources;
    sources.reserve(names.size());
    for (std::size_t i = 0; i < names.size(); ++i) {
        sources.push_back({sizeof(mTranslateProgramSource), names[i].c_str(), texts, lengths[i]});
        texts += lengths[i];
    }
    return sources;
}

std::vector<const char *> pointers_of(const std::vector<std::string> &texts) {
    std::vector<const char *> pointers;
    pointers.reserve(texts.size());
    for (const std::string &text : texts) pointers.push_back(text.c_str());
    return pointers;
}

/* Without the lists that only the report needs. */
mTranslateProgramResult told_of(const mTranslateProgramResult &result, std::uint32_t flags) {
    mTranslateProgramResult told = result;
    const bool has_details = (flags & MTRANSLATE_DETAILS) != 0;
    if (!has_details && (flags & MTRANSLATE_PIECES) == 0) told.piece_count = 0;
    if (!has_details && (flags & MTRANSLATE_OUTLINE) == 0) {
        told.function_count = told.statement_count = told.call_count = told.comment_count = 0;
        told.statistics = nullptr;
    }
    if ((flags & MTRANSLATE_TEXTS) == 0) told.file_count = 0;
    return told;
}

/* texts: the command, if there is one, and after it those of the sources. Throws
 * ConfigurationError. */
const Output *translate(const Json &wanted, const char *texts) {
    const auto names = wanted.at("sources").get<std::vector<std::string>>();
    const auto lengths = wanted.at("lengths").get<std::vector<std::size_t>>();
    const auto folders = wanted.at("folders").get<std::vector<std::string>>();
    const auto language = wanted.at("language").get<std::string>();
    const auto file = wanted.value("file", std::string());
    const std::string command(texts, wanted.value("commandLength", std::size_t{0}));
    const auto sources = sources_of(names, lengths, texts + command.size());
    const auto folder_names = pointers_of(folders);
    const Rules &rules = rules_of(wanted.at("rules"));
    RuleAnswers answers(rules, true);
    auto *tree = reinterpret_cast<Tree *>(wanted.value("index", std::uintptr_t{0}));
    const auto flags = wanted.at("flags").get<std::uint32_t>();
    const auto output = wanted.value("output", std::string());
    const Json &asks = wanted.at("asks");
    Questions questions(
        {asks.at("read"), asks.at("answer"), asks.at("find"), asks.at("resultKind")}, answers,
        tree);

    mTranslateProgramRequest request{};
    request.size = sizeof request;
    request.flags = flags | MTRANSLATE_WITHOUT_DISK;
    if (!output.empty()) request.flags |= FLAGS_OF_REPORT;
    if (language != "classic" && rules.find_form("display")) request.flags |= MTRANSLATE_DISPLAYS;
    (wanted.contains("file") ? request.file : request.command) =
        wanted.contains("file") ? file.c_str() : command.c_str();
    request.language = language.c_str();
    request.sources = sources.empty() ? nullptr : sources.data();
    request.source_count = sources.size();
    request.folders = wanted.at("looksInFolders") ? folder_names.data() : nullptr;
    request.folder_count = folder_names.size();
    request.max_memory = wanted.at("maxMemory").get<std::uint32_t>();
    questions.enter(request);
    Last.result.reset(mTranslateProgram(&request));
    JsonText json;
    if (output.empty())
        write_result(json, *Last.result, answers, "");
    else
        write_result(
            json, told_of(*Last.result, flags), answers,
            file_report(*Last.result, file, output, answers, tree ? &tree->index : nullptr));
    return keep(json.release());
}

/* As find_inputs sorts the files of a folder and of those in it. */
InputFiles inputs_of(std::vector<std::string> names) {
    std::sort(names.begin(), names.end(), [](const std::string &a, const std::string &b) {
        return std::filesystem::path(a) < std::filesystem::path(b);
    });
    InputFiles inputs;
    for (const std::string &name : names) inputs.add({name, name});
    return inputs;
}

const Output *make_index(const Json &names) {
    auto tree =
        std::make_unique<Tree>(Tree{FileIndex(inputs_of(names.get<std::vector<std::string>>()))});
    JsonText json;
    json.open('{').key("names").open('[');
    for (const InputFile &input : tree->index.files()) json.string(input.path);
    json.close(']').key("index");
    json.number(static_cast<std::int64_t>(reinterpret_cast<std::uintptr_t>(tree.release())));
    return keep(json.close('}').release());
}

/* Throws ConfigurationError. */
const Output *report(const nlohmann::ordered_json &wanted) {
    const Rules &rules = rules_of(Json(wanted.at("rules")));
    return keep(report_head(wanted.at("files"), rules, wanted.at("interrupted").get<bool>()));
}

/* What work gives, or its error: none leaves the module. */
template <class Work>
const Output *attempt(Work work) {
    try {
        Last.result.reset();
        return work();
    } catch (const ConfigurationError &error) {
        return keep_error("rules", error.what());
    } catch (const std::bad_alloc &) {
        return keep_error("no-memory", "system memory exhausted");
    } catch (const std::exception &error) {
        return keep_error("request", error.what());
    }
}

Json parsed(const char *json, std::size_t length) {
    return Json::parse(std::string_view(json, length));
}

}  // namespace

/* Each answers an output that is valid until the next call, or takes one that a call has made. */
extern "C" {

const Output *module_translate(const char *json, std::size_t length, const char *texts) {
    return attempt([=] { return translate(parsed(json, length), texts); });
}

const Output *module_message_kinds() {
    return attempt([] {
        JsonText json;
        write_message_kinds(json);
        return keep(json.release());
    });
}

const Output *module_make_index(const char *json, std::size_t length) {
    return attempt([=] { return make_index(parsed(json, length)); });
}

const Output *module_report(const char *json, std::size_t length) {
    return attempt(
        [=] { return report(nlohmann::ordered_json::parse(std::string_view(json, length))); });
}

void module_free_index(const Tree *tree) { delete tree; }

const Output *module_version() {
    return attempt([] { return keep(JsonText().string(mTranslateVersion()).release()); });
}

/* Frees what the last output holds. */
void module_release() {
    Last.result.reset();
    Last.json = {};
}
}

}  // namespace mtranslate::web
