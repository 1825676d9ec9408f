// Growing texts: a header block, and a data block that starts with a pointer back to the header.
#include "support/long_string.h"

#include <assert.h>
#include <string.h>

#include <algorithm>

#include "run/run_end.h"
#include "support/allocation.h"
#include "support/budget.h"

namespace {

struct DataBlock;

struct Header {
    int32_t capacity;  // bytes for characters and terminator
    int32_t length;    // characters; always below the capacity
    DataBlock *data;
};

struct DataBlock {
    Header *header;
    char text[1];  // capacity bytes
};

constexpr size_t TEXT_OFFSET = offsetof(DataBlock, text);

Header *header_of(LongString handle) {
    return reinterpret_cast<DataBlock *>(handle - TEXT_OFFSET)->header;
}

void resize_data(Header *header) {
    size_t size = TEXT_OFFSET + static_cast<size_t>(header->capacity);
    header->data = static_cast<DataBlock *>(Realloc(header->data, size));
}

char *text_of(const Header *header) { return reinterpret_cast<char *>(header->data) + TEXT_OFFSET; }

void grow(Header *header, size_t more) {
    int64_t needed = static_cast<int64_t>(header->length) + static_cast<int64_t>(more);
    int64_t capacity = header->capacity;
    while (needed >= capacity) capacity = capacity * 3 / 2;
    check_text(static_cast<size_t>(needed));
    capacity = std::min(capacity, longest_text() + 1);  // so that what is longer grows again
    if (capacity > INT32_MAX) end_run(TEXT_TOO_LONG);
    header->capacity = static_cast<int32_t>(capacity);
    resize_data(header);
}

// Makes space for more characters after the text; the handle may move.
inline void reserve(Header *header, size_t more) {
    if (more >= static_cast<size_t>(header->capacity - header->length)) grow(header, more);
}

}  // namespace

LongString NewLongString(int32_t capacity) {
    Header *header = static_cast<Header *>(Alloc(sizeof(Header)));
    *header = {capacity, 0, nullptr};
    resize_data(header);
    header->data->header = header;
    text_of(header)[0] = '\0';
    return text_of(header);
}

LongString AppendToString(LongString handle, char character) {
    Header *header = header_of(handle);
    reserve(header, 1);
    assert(header->length + 1 < header->capacity);
    char *end = text_of(header) + header->length++;
    end[0] = character;
    end[1] = '\0';
    return text_of(header);
}

LongString AppendBytesToString(LongString handle, const char *bytes, size_t length) {
    Header *header = header_of(handle);
    reserve(header, length);
    char *end = text_of(header) + header->length;
    memcpy(end, bytes, length);
    end[length] = '\0';
    header->length += static_cast<int32_t>(length);
    return text_of(header);
}

LongString AppendLineToString(LongString handle, size_t blanks, const char *bytes, size_t length) {
    Header *header = header_of(handle);
    reserve(header, blanks + length + 1);
    char *at = text_of(header) + header->length;
    memset(at, ' ', blanks);
    memcpy(at + blanks, bytes, length);
    memcpy(at + blanks + length, "\n", sizeof "\n");
    header->length += static_cast<int32_t>(blanks + length + 1);
    return text_of(header);
}

LongString AppendStringToString(LongString handle, const char *text) {
    return AppendBytesToString(handle, text, strlen(text));
}

int32_t LengthString(LongString handle) { return header_of(handle)->length; }

void ClearLongString(LongString handle) {
    header_of(handle)->length = 0;
    handle[0] = '\0';
}

void DisposeString(LongString handle) {
    Header *header = header_of(handle);
    Free(header->data);
    Free(header);
}
