#include "faults/SmallStack.h"

#include <cstddef>

#include <gtest/gtest.h>
#include <pthread.h>

namespace {

// The sanitizers' larger frames would only measure themselves.
#if defined(__SANITIZE_ADDRESS__) || defined(__SANITIZE_THREAD__)
constexpr std::size_t kStackBytes = std::size_t{16} << 20;
#elif defined(__has_feature)
#if __has_feature(address_sanitizer) || __has_feature(thread_sanitizer)
constexpr std::size_t kStackBytes = std::size_t{16} << 20;
#else
constexpr std::size_t kStackBytes = std::size_t{1} << 20;
#endif
#else
constexpr std::size_t kStackBytes = std::size_t{1} << 20;
#endif

}  // namespace

void RunOnSmallStack(std::function<void()> work) {
    pthread_attr_t attributes;
    ASSERT_EQ(pthread_attr_init(&attributes), 0);
    ASSERT_EQ(pthread_attr_setstacksize(&attributes, kStackBytes), 0);
    pthread_t thread{};
    const auto start = [](void* argument) -> void* {
        (*static_cast<std::function<void()>*>(argument))();
        return nullptr;
    };
    ASSERT_EQ(pthread_create(&thread, &attributes, start, &work), 0);
    ASSERT_EQ(pthread_join(thread, nullptr), 0);
    pthread_attr_destroy(&attributes);
}
