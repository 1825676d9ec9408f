/* Questions go out as JSON; an answer is a block of memory, which the asker frees: four bytes with
 * the length of the bytes that follow. */
#include "web/package/source/questions.h"

#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <memory>

#include "web/package/source/json_text.h"

namespace mtranslate::web {

namespace {

enum Kind : std::int32_t { READ, ANSWER, FIND, RESULT_KIND }; /* ORDER QUESTIONS */

/* The answer, or null for none. Does not throw: what the caller's function throws waits outside. */
extern "C" __attribute__((import_module("mtranslate"), import_name("ask"))) char *mtranslate_ask(
    std::int32_t kind, const char *json, std::size_t length);

constexpr std::uint32_t FAILED = UINT32_MAX; /* as the length: a file that cannot be read */

struct Reply {
    bool is_there = false;
    bool has_failed = false;
    std::string text;
};

Reply ask(Kind kind, JsonText &json) {
    const std::string question = json.release();
    const std::unique_ptr<char, void (*)(void *)> block(
        mtranslate_ask(kind, question.data(), question.size()), std::free);
    if (!block) return {};
    std::uint32_t length = 0;
    std::memcpy(&length, block.get(), sizeof length);
    if (length == FAILED) return {true, true, {}};
    return {true, false, std::string(block.get() + sizeof length, length)};
}

Reply ask(Kind kind, const char *name) {
    JsonText json;
    json.string(name);
    return ask(kind, json);
}

Reply ask(const mTranslateProgramQuestion &question) {
    JsonText json;
    const bool is_call = question.kind == MTRANSLATE_QUESTION_CALL;
    json.open('{').key("kind").string(is_call ? "call" : "name");
    json.key("name").string(question.name).key("arguments").open('[');
    for (std::size_t i = 0; i < question.argument_count; ++i) json.string(question.arguments[i]);
    json.close(']').key("results").number(question.results).close('}');
    return ask(ANSWER, json);
}

Reply ask(const mTranslateProgramSearch &search) {
    JsonText json;
    const bool is_method = search.kind == MTRANSLATE_SEARCH_METHOD;
    json.open('{').key("kind").string(is_method ? "method" : "file");
    json.key("name").string(search.name).key("className").string_or_null(search.class_name);
    json.key("caller").string_or_null(search.caller).close('}');
    return ask(FIND, json);
}

}  // namespace

std::int32_t Questions::read(const char *name, const char **text, std::size_t *length) {
    Reply reply = ask(READ, name);
    if (!reply.is_there) return MTRANSLATE_FILE_ABSENT;
    if (reply.has_failed) return MTRANSLATE_FILE_FAILED;
    text_ = std::move(reply.text);
    *text = text_->data();
    *length = text_->size();
    return MTRANSLATE_FILE_TEXT;
}

const char *Questions::answer(const mTranslateProgramQuestion &question) {
    text_.reset();
    if (Reply reply; asked_.answer && (reply = ask(question)).is_there)
        text_ = std::move(reply.text);
    else
        text_ = rules_.answer(question);
    return text_ ? text_->c_str() : nullptr;
}

const char *Questions::find(const mTranslateProgramSearch &search) {
    if (Reply reply; asked_.find && (reply = ask(search)).is_there) {
        text_ = std::move(reply.text);
        return text_->c_str();
    }
    if (!tree_) return nullptr;
    const FileIndex &index = tree_->index;
    const bool is_method = search.kind == MTRANSLATE_SEARCH_METHOD;
    text_ = is_method ? index.find_method(search.class_name, search.name)
                      : index.find(search.caller ? search.caller : "", search.name);
    return text_ ? text_->c_str() : nullptr;
}

std::int32_t Questions::result_kind(const char *name) {
    if (Reply reply; asked_.result_kind && (reply = ask(RESULT_KIND, name)).is_there)
        return std::atoi(reply.text.c_str());
    return rules_.kind(name);
}

const char *Questions::recall(const char *path) const {
    const auto found = tree_->known.find(path);
    return found == tree_->known.end() ? nullptr : found->second.c_str();
}

void Questions::enter_tree(mTranslateProgramRequest &request) const {
    if (!tree_->index.has_methods()) request.flags |= MTRANSLATE_WITHOUT_METHODS;
    request.remember = [](void *self, const char *path, const char *results) {
        static_cast<Questions *>(self)->tree_->known[path] = results;
    };
    request.recall = [](void *self, const char *path) {
        return static_cast<Questions *>(self)->recall(path);
    };
}

void Questions::enter(mTranslateProgramRequest &request) {
    request.context = this;
    if (asked_.read)
        request.read = [](void *self, const char *name, const char **text, std::size_t *length) {
            return static_cast<Questions *>(self)->read(name, text, length);
        };
    request.answer = [](void *self, const mTranslateProgramQuestion *question) {
        return static_cast<Questions *>(self)->answer(*question);
    };
    if (asked_.find || tree_)
        request.find = [](void *self, const mTranslateProgramSearch *search) {
            return static_cast<Questions *>(self)->find(*search);
        };
    if (tree_ && !asked_.find) enter_tree(request);
    request.result_kind = [](void *self, const char *name) {
        return static_cast<Questions *>(self)->result_kind(name);
    };
}

}  // namespace mtranslate::web
