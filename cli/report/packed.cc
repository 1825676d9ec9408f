#include "cli/report/packed.h"

#include <zlib.h>

#include <algorithm>
#include <array>
#include <limits>
#include <new>

namespace mtranslate {

/* Bits of the window: negative for a stream without a header, as browsers read it. */
static constexpr int RAW = -MAX_WBITS;

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

PackedText::PackedText(Effort effort) : stream_(std::make_unique<Stream>()) {
    const int level = effort == Effort::Little ? Z_BEST_SPEED : Z_DEFAULT_COMPRESSION;
    if (deflateInit2(&stream_->deflate, level, Z_DEFLATED, RAW, 9, Z_DEFAULT_STRATEGY) != Z_OK)
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
    std::string packed(stream_->packed);  // with no more room than it needs
    stream_->packed.clear();
    stream_->size = 0;
    deflateReset(&stream_->deflate);
    return packed;
}

std::string unpacked(std::string_view packed) {
    z_stream stream{};
    if (inflateInit2(&stream, RAW) != Z_OK) throw std::bad_alloc();
    stream.next_in = reinterpret_cast<Bytef *>(const_cast<char *>(packed.data()));
    stream.avail_in = static_cast<uInt>(packed.size());
    std::string text;
    std::array<unsigned char, 1 << 15> buffer;
    do {
        stream.next_out = buffer.data();
        stream.avail_out = buffer.size();
        inflate(&stream, Z_NO_FLUSH);
        text.append(reinterpret_cast<const char *>(buffer.data()),
                    buffer.size() - stream.avail_out);
    } while (stream.avail_out == 0);
    inflateEnd(&stream);
    return text;
}

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

}  // namespace mtranslate
