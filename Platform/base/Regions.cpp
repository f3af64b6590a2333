#include "base/Regions.h"

#include <mutex>

#include <KivBase/SpareMemory.h>

#include "base/SystemRegions.h"

namespace KivBase {
namespace {

struct SpareRegion {
    SpareRegion* next;
};

/// Regions that no buffer uses, linked through their first words.
class SpareRegions {
public:
    void* Take() noexcept {
        const std::lock_guard<std::mutex> lock(mutex_);
        SpareRegion* const region = first_;
        if (region != nullptr) {
            first_ = region->next;
            bytes_ -= kRegionSize;
        }
        return region;
    }

    bool Keep(void* memory) noexcept {
        const std::lock_guard<std::mutex> lock(mutex_);
        if (bytes_ + kRegionSize > most_) {
            return false;
        }
        auto* const region = static_cast<SpareRegion*>(memory);
        region->next = first_;
        first_ = region;
        bytes_ += kRegionSize;
        return true;
    }

    std::size_t SetMost(std::size_t bytes) noexcept {
        const std::lock_guard<std::mutex> lock(mutex_);
        const std::size_t before = most_;
        most_ = bytes;
        while (bytes_ > most_) {
            SpareRegion* const region = first_;
            first_ = region->next;
            bytes_ -= kRegionSize;
            UnmapRegion(region, kRegionSize);
        }
        return before;
    }

private:
    std::mutex mutex_;
    SpareRegion* first_ = nullptr;
    std::size_t bytes_ = 0;
    std::size_t most_ = kDefaultSpareMemory;
};

SpareRegions& GetSpareRegions() noexcept {
    // Never destroyed: a forest may outlive the objects of this module that are.
    alignas(SpareRegions) static unsigned char place[sizeof(SpareRegions)];
    static auto* const spareRegions = new (place) SpareRegions;
    return *spareRegions;
}

}  // namespace

void* TakeRegion() noexcept {
    void* const region = GetSpareRegions().Take();
    return region != nullptr ? region : MapRegion(kRegionSize);
}

void ReturnRegion(void* region) noexcept {
    if (!GetSpareRegions().Keep(region)) {
        UnmapRegion(region, kRegionSize);
    }
}

std::size_t SetSpareMemory(std::size_t bytes) noexcept {
    return GetSpareRegions().SetMost(bytes);
}

}  // namespace KivBase
