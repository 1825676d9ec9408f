// Memory of a program's result.
#include "driver/program/program_memory.h"

#include <stdlib.h>

#include <algorithm>
#include <new>

struct ResultBlock {
    ResultBlock *next;
};

namespace {

constexpr size_t ALIGNMENT = alignof(max_align_t);
constexpr size_t HEAD = (sizeof(ResultBlock) + ALIGNMENT - 1) / ALIGNMENT * ALIGNMENT;
constexpr size_t SMALLEST_BLOCK = 4096;

void add_block(ResultMemory *memory, size_t size) {
    size_t capacity = std::max(size, SMALLEST_BLOCK);
    ResultBlock *block = static_cast<ResultBlock *>(malloc(HEAD + capacity));
    if (!block) throw std::bad_alloc();
    block->next = memory->blocks;
    *memory = {block, reinterpret_cast<char *>(block) + HEAD, capacity};
}

// Its bytes are not set.
char *take_bytes(ResultMemory *memory, size_t size) {
    size = (size + ALIGNMENT - 1) / ALIGNMENT * ALIGNMENT;
    if (memory->left < size) add_block(memory, size);
    char *part = memory->next;
    memory->next += size;
    memory->left -= size;
    return part;
}

}  // namespace

void *take_result(ResultMemory *memory, size_t size) {
    return memset(take_bytes(memory, size), 0, size);
}

void release_result(const ResultMemory *memory) {
    for (ResultBlock *block = memory->blocks; block;) {
        ResultBlock *next = block->next;
        free(block);
        block = next;
    }
}

const char *keep_result(ResultMemory *memory, const char *text, size_t length) {
    char *copy = take_bytes(memory, length + 1);
    if (length > 0) memcpy(copy, text, length);
    copy[length] = '\0';
    return copy;
}
