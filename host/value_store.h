/* Values of the stand-in host: made, owned and read here.
 *
 * A value is one word: 0 is null, a word with its lowest bit set is an integer, any other word is
 * the address of an object: an array of words whose word 0 is the header. The first 32-bit unit of
 * the header holds the type in its top 6 bits and the number of the words that follow below them.
 *
 * | type     | words from 1 on                       |
 * |----------|---------------------------------------|
 * | String   | address of its NUL-terminated text    |
 * | Name     | address of its NUL-terminated text    |
 * | Boolean  | 0 or 1                                |
 * | Equation | left side, right side                 |
 * | List     | the elements                          |
 * | Sequence | the elements; null until they are set | */
#pragma once

#include <cstddef>
#include <cstdint>
#include <memory_resource>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include <mtranslate.h>

namespace mtranslate {

/* Name and Equation have the numbers that the library knows; the others are this host's own. */
enum class ValueType : std::uint32_t {
    String = 1,
    Boolean = 2,
    List = 3,
    Sequence = 4,
    Name = HOST_TYPE_NAME,
    Equation = HOST_TYPE_EQUATION,
};

/* Makes values and owns them, their texts and elements included: all live until clear or the end
 * of the store. */
class ValueStore {
public:
    /* Texts are copied; what stands after a NUL in them is not seen again. */
    HostValue string(std::string_view text);
    HostValue name(std::string_view text);
    HostValue boolean(bool value);
    /* An immediate: takes no memory and survives clear. One bit of the number is lost. */
    static HostValue integer(std::intptr_t number);
    HostValue equation(HostValue left, HostValue right);
    HostValue list(std::span<const HostValue> elements);
    HostValue list_of_strings(const std::vector<std::string> &texts);
    /* A sequence of count nulls, to be filled through word i for element i. */
    HostValue sequence(std::size_t count);
    HostValue sequence(std::span<const HostValue> elements);

    /* Releases every object made so far. */
    void clear();

private:
    /* An object of count words, with more bytes after it. */
    HostValue *object(ValueType type, std::size_t count, std::size_t more = 0);
    HostValue text_object(ValueType type, std::string_view text);
    HostValue collection(ValueType type, std::span<const HostValue> elements);

    std::pmr::monotonic_buffer_resource memory_;
};

/* Whether value is an object of the type; false for null and for integers. */
bool is_a(ValueType type, HostValue value);
/* The text of a string or a name; null for any other value. */
const char *text_of(HostValue value);
/* Number of elements of a list or a sequence, 0 for any other value. */
int element_count(HostValue value);
/* Element index, from 1 to element_count, of a list or a sequence. */
HostValue element_of(HostValue value, int index);
/* False for null and for the boolean false, true for every other value. */
bool to_boolean(HostValue value);
/* How error messages show a value: "text", name, 12, true, [a, b], left = right; null for 0. */
std::string to_display(HostValue value);

}  // namespace mtranslate
