#include "platform/CountedHeap.h"

#include <atomic>

#include "support/RuntimeHeapWindows.h"

namespace KivPlatform::Testing {
namespace {

std::atomic<std::ptrdiff_t> live{0};
std::atomic<std::ptrdiff_t> leftToFailure{-1};

bool FailsWhenAsked() noexcept {
    return leftToFailure.load() >= 0 && leftToFailure.fetch_sub(1) == 0;
}

void AddLive() noexcept {
    ++live;
}

void RemoveLive() noexcept {
    --live;
}

const bool watched = KivTests::WatchHeap({FailsWhenAsked, AddLive, RemoveLive});

}  // namespace

std::ptrdiff_t CountedHeap::GetLive() noexcept {
    return live.load();
}

void CountedHeap::FailAfter(std::ptrdiff_t count) noexcept {
    leftToFailure.store(count);
}

}  // namespace KivPlatform::Testing
