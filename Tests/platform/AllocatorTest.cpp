#include <KivBase/Allocator.h>

#include <cstddef>
#include <functional>
#include <limits>
#include <map>
#include <memory>
#include <new>
#include <set>
#include <type_traits>
#include <utility>
#include <vector>

#include <KivBase/WString.h>
#include <gtest/gtest.h>

namespace KivPlatform::Testing {
namespace {

using KivBase::Allocator;
using KivBase::Buffer;
using KivBase::WString;
using Numbers = std::vector<int, Allocator<int>>;

std::unique_ptr<Buffer> MakeBuffer() {
    return std::unique_ptr<Buffer>(KivBase::CreateBuffer(1, 1, 4096, false));
}

class NullBuffer final : public Buffer {
public:
    void* Allocate(std::size_t, std::size_t) override { return nullptr; }
    std::size_t BytesReserved() const override { return 0; }
    std::size_t BytesInUse() const override { return 0; }
    void Free(void*, std::size_t, std::size_t) noexcept override {}
};

TEST(AllocatorTest, IsOverTheHeapWhenDefaultConstructed) {
    EXPECT_EQ(nullptr, Allocator<int>().GetBuffer());
    Numbers numbers;
    numbers.assign(100, 7);
    EXPECT_EQ(7, numbers[99]);
}

TEST(AllocatorTest, TakesFromItsBufferAndGivesBack) {
    const auto buffer = MakeBuffer();
    {
        Numbers numbers{Allocator<int>(buffer.get())};
        numbers.assign(100, 7);
        EXPECT_EQ(400U, buffer->BytesInUse());
    }
    EXPECT_EQ(0U, buffer->BytesInUse());
}

TEST(AllocatorTest, ServesTextsSetsAndMaps) {
    const auto buffer = MakeBuffer();
    {
        const WString text(u"A text that is too long to stand inside the string object",
                           Allocator<char16_t>(buffer.get()));
        EXPECT_EQ(57U, text.size());
        const std::size_t withText = buffer->BytesInUse();
        EXPECT_LE(58U * 2, withText);
        std::set<int, std::less<>, Allocator<int>> set{Allocator<int>(buffer.get())};
        set.insert({3, 1, 2});
        const std::size_t withSet = buffer->BytesInUse();
        EXPECT_LT(withText, withSet);
        std::map<int, char, std::less<>, Allocator<std::pair<const int, char>>> map{
            Allocator<std::pair<const int, char>>(buffer.get())};
        map[5] = 'a';
        EXPECT_LT(withSet, buffer->BytesInUse());
    }
    EXPECT_EQ(0U, buffer->BytesInUse());
}

TEST(AllocatorTest, ACopyOfAContainerIsOnTheHeap) {
    auto buffer = MakeBuffer();
    auto original = std::make_unique<Numbers>(50, 3, Allocator<int>(buffer.get()));
    const std::size_t inUse = buffer->BytesInUse();
    const Numbers copy(*original);
    EXPECT_EQ(nullptr, copy.get_allocator().GetBuffer());
    EXPECT_EQ(inUse, buffer->BytesInUse());
    original.reset();
    buffer.reset();
    EXPECT_EQ(Numbers(50, 3), copy);
}

TEST(AllocatorTest, AMovedContainerStaysInItsBuffer) {
    const auto buffer = MakeBuffer();
    Numbers original(50, 3, Allocator<int>(buffer.get()));
    const int* const place = original.data();
    const Numbers moved(std::move(original));
    EXPECT_EQ(place, moved.data());
    EXPECT_EQ(buffer.get(), moved.get_allocator().GetBuffer());
}

TEST(AllocatorTest, AssignmentLeavesEachContainerItsBuffer) {
    const auto first = MakeBuffer();
    const auto second = MakeBuffer();
    Numbers inFirst(50, 3, Allocator<int>(first.get()));
    Numbers inSecond{Allocator<int>(second.get())};
    inSecond = inFirst;
    EXPECT_EQ(second.get(), inSecond.get_allocator().GetBuffer());
    EXPECT_EQ(200U, second->BytesInUse());

    Numbers target{Allocator<int>(second.get())};
    target = std::move(inFirst);
    EXPECT_EQ(second.get(), target.get_allocator().GetBuffer());
    EXPECT_EQ(400U, second->BytesInUse());
    EXPECT_EQ(Numbers(50, 3), target);
}

TEST(AllocatorTest, NeverTravelsWithAContainer) {
    using Traits = std::allocator_traits<Allocator<int>>;
    EXPECT_FALSE(Traits::propagate_on_container_copy_assignment::value);
    EXPECT_FALSE(Traits::propagate_on_container_move_assignment::value);
    EXPECT_FALSE(Traits::propagate_on_container_swap::value);
    EXPECT_FALSE(Traits::is_always_equal::value);
}

TEST(AllocatorTest, IsEqualForTheSameBufferWhateverTheType) {
    const auto buffer = MakeBuffer();
    const auto other = MakeBuffer();
    const Allocator<int> numbers(buffer.get());
    const Allocator<char16_t> units(numbers);
    EXPECT_EQ(buffer.get(), units.GetBuffer());
    EXPECT_TRUE(numbers == units);
    EXPECT_FALSE(numbers != units);
    EXPECT_TRUE(numbers != Allocator<int>(other.get()));
    EXPECT_FALSE(numbers == Allocator<int>(other.get()));
    EXPECT_TRUE(numbers != Allocator<int>());
    EXPECT_TRUE(Allocator<int>() == Allocator<char>());
}

TEST(AllocatorTest, RefusesMoreElementsThanThereAreBytes) {
    const auto buffer = MakeBuffer();
    constexpr std::size_t kTooMany = std::numeric_limits<std::size_t>::max() / sizeof(int) + 1;
    EXPECT_THROW(Allocator<int>().allocate(kTooMany), std::bad_alloc);
    EXPECT_THROW(Allocator<int>(buffer.get()).allocate(kTooMany), std::bad_alloc);
    EXPECT_EQ(0U, buffer->BytesInUse());
}

TEST(AllocatorTest, ABufferThatAnswersNullBecomesBadAlloc) {
    NullBuffer buffer;
    Numbers numbers{Allocator<int>(&buffer)};
    EXPECT_THROW(numbers.push_back(1), std::bad_alloc);
    EXPECT_TRUE(numbers.empty());
}

}  // namespace
}  // namespace KivPlatform::Testing
