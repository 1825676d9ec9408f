/* Values as bytes, for the same program in another process. */
#pragma once

#include <algorithm>
#include <cereal/archives/binary.hpp>
#include <cstddef>
#include <cstring>
#include <sstream>
#include <string>
#include <type_traits>
#include <utility>

namespace mtranslate {

/* Writes what a cereal::BinaryInputArchive reads. Through a stream each number would cost several
 * times as much, and results are many small parts. */
class BytesArchive : public cereal::OutputArchive<BytesArchive, cereal::AllowEmptyClassElision> {
public:
    BytesArchive() : OutputArchive(this) {}
    void append(const void *data, std::size_t size) {
        if (bytes_.size() - used_ < size) grow(size);
        if (size > 0) std::memcpy(bytes_.data() + used_, data, size);
        used_ += size;
    }
    /* What has been written, once. */
    std::string take() {
        bytes_.resize(used_);
        return std::move(bytes_);
    }

private:
    static constexpr std::size_t FIRST_SIZE = 4096;

    /* Out of line, so that the rest is written in line for each number. */
    [[gnu::noinline]] void grow(std::size_t more) {
        bytes_.resize(std::max(2 * bytes_.size(), used_ + more));
    }

    std::string bytes_ = std::string(FIRST_SIZE, '\0'); /* with space after what is used */
    std::size_t used_ = 0;
};

/* By these names cereal finds how each kind of part is written. */
template <class Number>
std::enable_if_t<std::is_arithmetic_v<Number>> save(BytesArchive &archive, const Number &number) {
    archive.append(&number, sizeof number);
}
template <class Type>
void save(BytesArchive &archive, const cereal::BinaryData<Type> &data) {
    archive.append(data.data, data.size);
}
template <class Type>
void serialize(BytesArchive &archive, cereal::SizeTag<Type> &tag) {
    archive(tag.size);
}
template <class Type>
void serialize(BytesArchive &archive, cereal::NameValuePair<Type> &pair) {
    archive(pair.value);
}

template <class Value>
std::string to_bytes(const Value &value) {
    BytesArchive archive;
    archive(value);
    return archive.take();
}

template <class Value>
Value from_bytes(const std::string &text) {
    std::istringstream bytes(text);
    cereal::BinaryInputArchive archive(bytes);
    Value value;
    archive(value);
    return value;
}

}  // namespace mtranslate
