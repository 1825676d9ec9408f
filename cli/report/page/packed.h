/* Texts as a page holds them: compressed, in characters that mean nothing in HTML. */
#pragma once

#include <memory>
#include <string>
#include <string_view>

namespace mtranslate {

/* Takes a text in pieces, so that it is never in memory as a whole. Each member function throws
 * std::bad_alloc where there is no memory. */
class PackedText {
public:
    PackedText();
    ~PackedText();
    PackedText(const PackedText &) = delete;
    PackedText &operator=(const PackedText &) = delete;

    void add(std::string_view piece);
    std::size_t size() const; /* of what was added */
    /* All that was added, as base64 of a raw deflate stream. The text is empty then, for others. */
    std::string take();

private:
    struct Stream;
    std::unique_ptr<Stream> stream_;
};

}  // namespace mtranslate
