/* JSON as text, written in the order of its fields: results are too large to be built as values. */
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

namespace mtranslate::web {

class JsonText {
public:
    JsonText &open(char bracket) {
        text_ += bracket;
        return *this;
    }
    /* Ends what open has begun. */
    JsonText &close(char bracket);
    /* Of the field whose value comes next. */
    JsonText &key(std::string_view name);
    /* Bytes that are no UTF-8 become U+FFFD. */
    JsonText &string(std::string_view value);
    JsonText &number(std::int64_t value);
    JsonText &truth(bool value) { return word(value ? "true" : "false"); }
    JsonText &null() { return word("null"); }
    /* A value that is JSON already. */
    JsonText &json(std::string_view value) { return word(value); }
    /* Null for null. */
    JsonText &string_or_null(const char *value) { return value ? string(value) : null(); }

    /* The whole; ends it. */
    std::string release();

private:
    JsonText &word(std::string_view text);

    std::string text_; /* a comma after each value */
};

}  // namespace mtranslate::web
