/* Making and reading the stand-in host's values. */
#include "host/value_store.h"

#include <algorithm>
#include <cassert>
#include <cstring>

namespace mtranslate {

namespace {

constexpr std::uint32_t COUNT_MASK = (std::uint32_t{1} << HOST_TYPE_SHIFT) - 1;

bool is_integer(HostValue value) { return (value & 1) != 0; }

HostValue *words_of(HostValue value) { return reinterpret_cast<HostValue *>(value); }

/* The first 32-bit unit of an object: of word 0 the half that lies first in memory. */
std::uint32_t header_of(HostValue value) {
    std::uint32_t unit = 0;
    std::memcpy(&unit, words_of(value), sizeof unit);
    return unit;
}

std::string display_elements(HostValue value) {
    std::string text;
    for (int i = 1; i <= element_count(value); ++i) {
        text += i == 1 ? "" : ", ";
        text += to_display(element_of(value, i));
    }
    return text;
}

std::string display_object(HostValue value) {
    switch (static_cast<ValueType>(header_of(value) >> HOST_TYPE_SHIFT)) {
        case ValueType::String: return '"' + std::string(text_of(value)) + '"';
        case ValueType::Name: return text_of(value);
        case ValueType::Boolean: return to_boolean(value) ? "true" : "false";
        case ValueType::Equation:
            return to_display(words_of(value)[1]) + " = " + to_display(words_of(value)[2]);
        case ValueType::List: return '[' + display_elements(value) + ']';
        case ValueType::Sequence: return display_elements(value);
    }
    return "a value of unknown type";
}

}  // namespace

HostValue *ValueStore::object(ValueType type, std::size_t count, std::size_t more) {
    assert(count <= COUNT_MASK);
    const std::size_t words = count + 1;
    const std::size_t size = words * sizeof(HostValue) + more;
    auto *object = static_cast<HostValue *>(memory_.allocate(size, alignof(HostValue)));
    std::fill_n(object, words, HostValue{0});
    const std::uint32_t header =
        static_cast<std::uint32_t>(type) << HOST_TYPE_SHIFT | static_cast<std::uint32_t>(count);
    std::memcpy(object, &header, sizeof header);
    return object;
}

HostValue ValueStore::text_object(ValueType type, std::string_view text) {
    HostValue *words = object(type, 1, text.size() + 1);
    auto *copy = reinterpret_cast<char *>(words + 2);
    *std::copy(text.begin(), text.end(), copy) = '\0';
    words[1] = reinterpret_cast<HostValue>(copy);
    return reinterpret_cast<HostValue>(words);
}

HostValue ValueStore::collection(ValueType type, std::span<const HostValue> elements) {
    HostValue *words = object(type, elements.size());
    std::copy(elements.begin(), elements.end(), words + 1);
    return reinterpret_cast<HostValue>(words);
}

HostValue ValueStore::string(std::string_view text) { return text_object(ValueType::String, text); }

HostValue ValueStore::name(std::string_view text) { return text_object(ValueType::Name, text); }

HostValue ValueStore::boolean(bool value) {
    const HostValue word = value ? 1 : 0;
    return collection(ValueType::Boolean, {&word, 1});
}

HostValue ValueStore::integer(std::intptr_t number) {
    return static_cast<HostValue>(number) << 1 | 1;
}

HostValue ValueStore::equation(HostValue left, HostValue right) {
    const HostValue sides[] = {left, right};
    return collection(ValueType::Equation, sides);
}

HostValue ValueStore::list(std::span<const HostValue> elements) {
    return collection(ValueType::List, elements);
}

HostValue ValueStore::list_of_strings(const std::vector<std::string> &texts) {
    HostValue *words = object(ValueType::List, texts.size());
    std::transform(texts.begin(), texts.end(), words + 1,
                   [this](const std::string &text) { return string(text); });
    return reinterpret_cast<HostValue>(words);
}

HostValue ValueStore::sequence(std::size_t count) {
    return reinterpret_cast<HostValue>(object(ValueType::Sequence, count));
}

HostValue ValueStore::sequence(std::span<const HostValue> elements) {
    return collection(ValueType::Sequence, elements);
}

void ValueStore::clear() { memory_.release(); }

bool is_a(ValueType type, HostValue value) {
    return value != 0 && !is_integer(value) &&
           header_of(value) >> HOST_TYPE_SHIFT == static_cast<std::uint32_t>(type);
}

const char *text_of(HostValue value) {
    if (!is_a(ValueType::String, value) && !is_a(ValueType::Name, value)) return nullptr;
    return reinterpret_cast<const char *>(words_of(value)[1]);
}

int element_count(HostValue value) {
    if (!is_a(ValueType::List, value) && !is_a(ValueType::Sequence, value)) return 0;
    return static_cast<int>(header_of(value) & COUNT_MASK);
}

HostValue element_of(HostValue value, int index) {
    assert(index >= 1 && index <= element_count(value));
    return words_of(value)[index];
}

bool to_boolean(HostValue value) {
    return value != 0 && !(is_a(ValueType::Boolean, value) && words_of(value)[1] == 0);
}

std::string to_display(HostValue value) {
    if (value == 0) return "null";
    if (is_integer(value)) return std::to_string(static_cast<std::intptr_t>(value) >> 1);
    return display_object(value);
}

}  // namespace mtranslate
