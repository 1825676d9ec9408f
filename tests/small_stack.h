/* Threads with as little stack as hosts may give. */
#pragma once

#include <gtest/gtest.h>
#include <pthread.h>

#include <cstddef>
#include <functional>
#include <string>

#include "support/allocation.h"

namespace mtranslate {

/* Bytes. The address sanitizer puts red zones between all variables; without optimisation each of
 * them has a place of its own. */
inline std::size_t small_stack_size() {
    if (!PartsShareBlocks) return 64 << 20;
#ifdef __OPTIMIZE__
    return 512 << 10;
#else
    return 2 << 20;
#endif
}

/* What work answers in a thread that has as little stack as hosts may give. */
inline std::string on_small_stack(const std::function<std::string()> &work) {
    struct Task {
        const std::function<std::string()> &work;
        std::string text;
    } task{work, ""};
    pthread_attr_t attributes;
    pthread_attr_init(&attributes);
    EXPECT_EQ(pthread_attr_setstacksize(&attributes, small_stack_size()), 0);
    pthread_t thread;
    const auto run = [](void *argument) -> void * {
        Task *task = static_cast<Task *>(argument);
        task->text = task->work();
        return nullptr;
    };
    EXPECT_EQ(pthread_create(&thread, &attributes, run, &task), 0);
    pthread_join(thread, nullptr);
    pthread_attr_destroy(&attributes);
    return task.text;
}

}  // namespace mtranslate
