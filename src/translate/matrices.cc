// Rows of elements in growable arrays.
#include "translate/matrices.h"

#include <assert.h>

#include "support/allocation.h"

namespace {

constexpr int32_t MINIMUM_CAPACITY = 10;

template <typename Container>
Container *alloc_container(int32_t capacity) {
    using Item = decltype(Container::items);
    Container *container = AllocRecord<Container>();
    if (capacity < MINIMUM_CAPACITY) capacity = MINIMUM_CAPACITY;
    size_t size = static_cast<size_t>(capacity) * sizeof(void *);
    *container = {0, capacity, static_cast<Item>(AllocKept(size))};
    return container;
}

template <typename Container, typename Item>
Container *append(Container *container, Item *item) {
    assert(container->count <= container->capacity);
    if (container->count == container->capacity) {
        size_t size = static_cast<size_t>(container->capacity) * sizeof(Item *);
        container->items = static_cast<Item **>(GrowKept(container->items, size, 2 * size));
        container->capacity *= 2;
    }
    container->items[container->count++] = item;
    return container;
}

}  // namespace

mMatrix *alloc_mMatrix(int32_t capacity) { return alloc_container<mMatrix>(capacity); }
mVector *alloc_mVector(int32_t capacity) { return alloc_container<mVector>(capacity); }
mMatrix *append_to_matrix(mMatrix *matrix, mVector *row) { return append(matrix, row); }
mVector *append_to_vector(mVector *vector, mExpr *element) { return append(vector, element); }

mMatrix *build_mMatrix(int32_t count, mVector **items) {
    assert(count == 0 || items);
    mMatrix *view = AllocRecord<mMatrix>();
    view->count = count;
    view->items = items;
    return view;
}

mMatrix *target_row(mExpr *first, const vExpr *rest) {
    mVector *row = append_to_vector(alloc_mVector(1), first);
    for (; rest; rest = rest->next) append_to_vector(row, rest->item);
    mMatrix *rows = append_to_matrix(alloc_mMatrix(1), row);
    return build_mMatrix(rows->count, rows->items);
}
