#include <KivBase/ReturnPtrI.h>

#include <cstdint>
#include <memory>
#include <string>
#include <type_traits>
#include <utility>

#include <KivBase/ReferenceCounted.h>
#include <gtest/gtest.h>

namespace KivPlatform::Testing {
namespace {

/// Records what is asked of it: '+' for AddRef, '-' for Release.
class Recorder final : public KivBase::ReferenceCounted {
public:
    std::int32_t AddRef() override {
        calls += '+';
        return ++references;
    }
    std::int32_t Release() override {
        calls += '-';
        return --references;
    }
    std::string calls;
    std::int32_t references = 1;
};

using Handle = KivBase::ReturnPtrI<Recorder>;

TEST(ReturnPtrITest, IsEmptyWhenDefaultConstructed) {
    const Handle handle;
    EXPECT_EQ(nullptr, handle.Get());
    EXPECT_FALSE(handle);
    Handle copy(handle);
    EXPECT_FALSE(copy);
    copy.Reset();
    EXPECT_FALSE(copy);
}

TEST(ReturnPtrITest, TakesOverTheReferenceAndReleasesIt) {
    Recorder object;
    {
        const Handle handle(&object);
        EXPECT_TRUE(handle);
        EXPECT_EQ(&object, handle.Get());
        EXPECT_EQ(1, handle->references);
        EXPECT_EQ(1, (*handle).references);
        EXPECT_EQ("", object.calls);
    }
    EXPECT_EQ("-", object.calls);
    EXPECT_EQ(0, object.references);
}

TEST(ReturnPtrITest, CopyingTakesOneMoreReference) {
    Recorder object;
    {
        const Handle handle(&object);
        Handle copy(handle);
        EXPECT_EQ("+", object.calls);
        EXPECT_EQ(&object, copy.Get());
        copy.Reset();
        EXPECT_EQ("+-", object.calls);
        EXPECT_EQ(&object, handle.Get());
    }
    EXPECT_EQ("+--", object.calls);
}

TEST(ReturnPtrITest, MovingTakesNone) {
    Recorder object;
    {
        const auto from = std::make_unique<Handle>(&object);
        const Handle to(std::move(*from));
        EXPECT_EQ(&object, to.Get());
        EXPECT_EQ(nullptr, from->Get());
        EXPECT_EQ("", object.calls);
    }
    EXPECT_EQ("-", object.calls);
}

TEST(ReturnPtrITest, CopyAssignmentReleasesWhatWasHeld) {
    Recorder first;
    Recorder second;
    Handle to(&first);
    const Handle from(&second);
    to = from;
    EXPECT_EQ("-", first.calls);
    EXPECT_EQ("+", second.calls);
    to = Handle();
    EXPECT_EQ("+-", second.calls);
    EXPECT_FALSE(to);
}

TEST(ReturnPtrITest, MoveAssignmentReleasesWhatWasHeld) {
    Recorder first;
    Recorder second;
    Handle to(&first);
    const auto from = std::make_unique<Handle>(&second);
    to = std::move(*from);
    EXPECT_EQ("-", first.calls);
    EXPECT_EQ("", second.calls);
    EXPECT_EQ(&second, to.Get());
    EXPECT_EQ(nullptr, from->Get());
}

TEST(ReturnPtrITest, AssigningAHandleToItselfKeepsTheReference) {
    Recorder object;
    Handle handle(&object);
    Handle& same = handle;
    handle = same;
    EXPECT_EQ(&object, handle.Get());
    EXPECT_EQ(1, object.references);
    handle = std::move(same);
    EXPECT_EQ(&object, handle.Get());
    EXPECT_EQ(1, object.references);
}

TEST(ReturnPtrITest, DetachGivesTheReferenceToTheCaller) {
    Recorder object;
    {
        Handle handle(&object);
        EXPECT_EQ(&object, handle.Detach());
        EXPECT_FALSE(handle);
        EXPECT_EQ(nullptr, handle.Detach());
    }
    EXPECT_EQ("", object.calls);
}

TEST(ReturnPtrITest, ResetReleasesOnce) {
    Recorder object;
    Handle handle(&object);
    handle.Reset();
    EXPECT_FALSE(handle);
    handle.Reset();
    EXPECT_EQ("-", object.calls);
}

TEST(ReturnPtrITest, NothingTurnsAPointerIntoAHandleUnasked) {
    EXPECT_FALSE((std::is_convertible_v<Recorder*, Handle>));
    EXPECT_TRUE(std::is_nothrow_move_constructible_v<Handle>);
    EXPECT_TRUE(std::is_nothrow_move_assignable_v<Handle>);
}

/// Deletes itself with its last reference, as the interface says.
class SelfDeleter final : public KivBase::ReferenceCounted {
public:
    explicit SelfDeleter(bool& gone) : gone_(gone) {}
    ~SelfDeleter() override { gone_ = true; }
    std::int32_t AddRef() override { return ++references_; }
    std::int32_t Release() override {
        const std::int32_t count = --references_;
        if (count == 0) {
            delete this;
        }
        return count;
    }

private:
    std::int32_t references_ = 1;
    bool& gone_;
};

TEST(ReferenceCountedTest, TheLastHandleEndsTheObjectThroughTheInterface) {
    bool gone = false;
    KivBase::ReturnPtrI<KivBase::ReferenceCounted> handle(new SelfDeleter(gone));
    EXPECT_EQ(2, handle->AddRef());
    EXPECT_EQ(1, handle->Release());
    EXPECT_FALSE(gone);
    handle.Reset();
    EXPECT_TRUE(gone);
}

TEST(ReferenceCountedTest, CannotBeDeletedThroughTheInterface) {
    EXPECT_FALSE(std::is_destructible_v<KivBase::ReferenceCounted>);
    EXPECT_TRUE(std::has_virtual_destructor_v<KivBase::ReferenceCounted>);
}

}  // namespace
}  // namespace KivPlatform::Testing
