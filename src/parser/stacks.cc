// The parser's stacks: values first in their block, states after them.
#include "parser/stacks.h"

#include <string.h>

#include "support/heap.h"

// Of the innermost parse; null until it has one.
static void *StackBlock;

void *begin_stacks() {
    void *outer = StackBlock;
    StackBlock = nullptr;
    return outer;
}

void end_stacks(void *outer) {
    HeapFree(StackBlock);
    StackBlock = outer;
}

static ptrdiff_t grown(ptrdiff_t capacity) {
    if (capacity < FIRST_ENTRIES) return FIRST_ENTRIES;
    return capacity * 2 < MOST_ENTRIES ? capacity * 2 : MOST_ENTRIES;
}

bool grow_stacks(int16_t **states, SemanticValue **values, ptrdiff_t used, ptrdiff_t *capacity) {
    if (*capacity >= MOST_ENTRIES) return false;
    size_t new_capacity = static_cast<size_t>(grown(*capacity));
    size_t count = static_cast<size_t>(used);
    void *block = HeapAlloc(new_capacity * (sizeof(SemanticValue) + sizeof(int16_t)));
    if (!block) return false;
    SemanticValue *new_values = static_cast<SemanticValue *>(block);
    int16_t *new_states = reinterpret_cast<int16_t *>(new_values + new_capacity);
    for (size_t i = 0; i < count; i++) new_values[i] = (*values)[i];
    *values = new_values;
    *states = static_cast<int16_t *>(memcpy(new_states, *states, count * sizeof **states));
    *capacity = static_cast<ptrdiff_t>(new_capacity);
    HeapFree(StackBlock);
    StackBlock = block;
    return true;
}
