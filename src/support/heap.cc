// Plain heap blocks. Each carries its place in the chain in front of the caller's bytes.
#include "support/heap.h"

#include <stdint.h>
#include <stdlib.h>

#include "support/budget.h"

namespace {

struct alignas(max_align_t) Link {
    Link *next;
    Link *prev;
};

Link Chain = {&Chain, &Chain};

Link *link_of(void *block) { return static_cast<Link *>(block) - 1; }

void *enter_chain(Link *link) {
    if (!link) return nullptr;
    count_block(link);
    link->next = Chain.next;
    link->prev = &Chain;
    Chain.next->prev = link;
    Chain.next = link;
    return link + 1;
}

}  // namespace

void *HeapAlloc(size_t size) {
    if (size > SIZE_MAX - sizeof(Link)) return nullptr;
    return enter_chain(static_cast<Link *>(malloc(sizeof(Link) + size)));
}

void *HeapResize(void *block, size_t size) {
    if (!block) return HeapAlloc(size);
    if (size > SIZE_MAX - sizeof(Link)) return nullptr;
    Link *old = link_of(block);
    discount_block(old);
    Link *link = static_cast<Link *>(realloc(old, sizeof(Link) + size));
    count_block(link ? link : old);
    if (!link) return nullptr;
    link->next->prev = link;
    link->prev->next = link;
    return link + 1;
}

void HeapFree(void *block) {
    if (!block) return;
    Link *link = link_of(block);
    link->next->prev = link->prev;
    link->prev->next = link->next;
    discount_block(link);
    free(link);
}

void HeapReleaseAll() {
    while (Chain.next != &Chain) HeapFree(Chain.next + 1);
}
