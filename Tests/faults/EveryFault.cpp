#include "faults/EveryFault.h"

#include <new>
#include <string>

#include <gtest/gtest.h>

#include <KivGenerics/Map.h>

#include "faults/Documents.h"

using namespace KivGenerics;

namespace Faults {
namespace {

using Operation = std::function<void(Tree& tree, Tree& other)>;

/// The tree takes the whole document anew and holds it, whatever the fault has left of the old one.
void CheckUsable(Tree& tree) {
    if (tree.IsReadOnly()) {
        return;  // made so, or by a save that fails in the root
    }
    FillDocument(tree);
    const auto fresh = NewDocument();
    EXPECT_EQ(Describe(tree), Describe(*fresh));
    EXPECT_EQ(tree.GetRoot()->Compare(fresh->GetRoot(), TemporalityTemporary, true), 0);
    tree.RemoveRoot();
}

/// Answers whether an allocation has failed.
bool RunWithFault(const Operation& operation, Promise promise, long k, Lasting lasting, bool answersNull) {
    SCOPED_TRACE(k);
    const long blocks = GetLiveBlocks();
    bool struck = false;
    {
        const WrappedBuffers buffers(answersNull);
        auto tree = NewDocument();
        const auto other = NewDocument();
        const std::string before = Describe(*tree);
        bool failed = false;
        {
            const Armed armed(k, lasting);
            try {
                operation(*tree, *other);
            } catch (const std::bad_alloc&) {
                failed = true;
            }
            struck = armed.HasStruck();
        }
        EXPECT_EQ(CountUnsoundNodes(*tree), 0);
        if (failed && promise == Promise::TreeAsItWas) {
            EXPECT_EQ(Describe(*tree), before);
        }
        CheckUsable(*tree);
    }
    EXPECT_EQ(GetLiveBuffers(), 0);
    EXPECT_EQ(GetLiveBlocks(), blocks);
    return struck;
}

}  // namespace

void RunWithEveryFault(const Operation& operation, Promise promise, Lasting lasting, bool answersNull) {
    long k = 1;
    while (RunWithFault(operation, promise, k, lasting, answersNull) && !testing::Test::HasFailure()) {
        ++k;
        ASSERT_LT(k, 100'000);
    }
}

}  // namespace Faults
