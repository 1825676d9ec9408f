#include "cli/report/page/packed.h"

#include <zlib.h>

#include <algorithm>
#include <array>
#include <limits>
#include <new>

namespace mtranslate {

namespace {

std::string base64(std::string_view bytes) {
    constexpr const char *DIGITS =
        "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/";
    std::string text;
    text.reserve((bytes.size() + 2) / 3 * 4);
    for (std::size_t i = 0; i < bytes.size(); i += 3) {
        const std::size_t count = std::min<std::size_t>(3, bytes.size() - i);
        unsigned bits = 0;
        for (std::size_t j = 0; j < 3; ++j)
            bits = bits << 8 | (j < count ? static_cast<unsigned char>(bytes[i + j]) : 0);
        for (std::size_t j = 0; j < 4; ++j)
            text += j <= count ? DIGITS[bits >> (18 - 6 * j) & 63] : '=';
    }
    return text;
}

}  // namespace

struct PackedText::Stream {
    z_stream deflate{};
    std::string packed;
    std::size_t size = 0;

    void run(int flush) {
        std::array<unsigned char, 1 << 15> buffer;
        do {
            deflate.next_out = buffer.data();
            deflate.avail_out = buffer.size();
            ::deflate(&deflate, flush);
            packed.append(reinterpret_cast<const char *>(buffer.data()),
                          buffer.size() - deflate.avail_out);
        } while (deflate.avail_out == 0);
    }
};

PackedText::PackedText() : stream_(std::make_unique<Stream>()) {
    /* Negative bits of the window: without a header, as the page's browser reads it. */
    if (deflateInit2(&stream_->deflate, Z_DEFAULT_COMPRESSION, Z_DEFLATED, -MAX_WBITS, 9,
                     Z_DEFAULT_STRATEGY) != Z_OK)
        throw std::bad_alloc();
}

PackedText::~PackedText() { deflateEnd(&stream_->deflate); }

void PackedText::add(std::string_view piece) {
    stream_->size += piece.size();
    while (!piece.empty()) {
        const std::size_t part =
            std::min<std::size_t>(piece.size(), std::numeric_limits<uInt>::max());
        stream_->deflate.next_in = reinterpret_cast<Bytef *>(const_cast<char *>(piece.data()));
        stream_->deflate.avail_in = static_cast<uInt>(part);
        stream_->run(Z_NO_FLUSH);
        piece.remove_prefix(part);
    }
}

std::size_t PackedText::size() const { return stream_->size; }

std::string PackedText::take() {
    stream_->run(Z_FINISH);
    std::string text = base64(stream_->packed);
    stream_->packed.clear();
    stream_->size = 0;
    deflateReset(&stream_->deflate);
    return text;
}

}  // namespace mtranslate
