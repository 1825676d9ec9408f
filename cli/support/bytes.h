/* Values as bytes, for the same program in another process. */
#pragma once

#include <cereal/archives/binary.hpp>
#include <sstream>
#include <string>
#include <utility>

namespace mtranslate {

template <class Value>
std::string to_bytes(const Value &value) {
    std::ostringstream bytes;
    cereal::BinaryOutputArchive archive(bytes);
    archive(value);
    return std::move(bytes).str();
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
