/* Threads with as little stack as hosts may give. */
#pragma once

#include <gtest/gtest.h>
#include <pthread.h>

#include <functional>
#include <string>

#include "support/allocation.h"

namespace mtranslate {

/* What work answers in a thread that has as little stack as hosts may give. */
inline std::string on_small_stack(const std::function<std::string()> &work) {
    struct Task {
        const std::function<std::string()> &work;
        std::string text;
    } task{work, ""};
    pthread_attr_t attributes;
    pthread_attr_init(&attributes);
    // the address sanitizer puts red zones between all variables
    EXPECT_EQ(pthread_attr_setstacksize(&attributes, PartsShareBlocks ? 512 << 10 : 64 << 20), 0);
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
