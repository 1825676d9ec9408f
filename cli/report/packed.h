/* Texts and records deflated, to take little memory, or little of a page. */
#pragma once

#include <memory>
#include <string>
#include <string_view>

namespace mtranslate {

/* Takes a text in pieces, so that it is never in memory as a whole. Each member function throws
 * std::bad_alloc where there is no memory. */
class PackedText {
public:
    enum class Effort { Little, Usual };
    explicit PackedText(Effort effort = Effort::Usual);
    ~PackedText();
    PackedText(const PackedText &) = delete;
    PackedText &operator=(const PackedText &) = delete;

    void add(std::string_view piece);
    std::size_t size() const; /* of what was added */
    /* All that was added, as a raw deflate stream. The text is empty then, for others. */
    std::string take();

private:
    struct Stream;
    std::unique_ptr<Stream> stream_;
};

/* The text of such a stream. Throws std::bad_alloc. */
std::string unpacked(std::string_view packed);

/* Bytes in characters that mean nothing in HTML. */
std::string base64(std::string_view bytes);

}  // namespace mtranslate
