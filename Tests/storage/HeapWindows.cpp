// The heap below the operators `new` and `delete` of the whole program, its shared libraries included.

#include "storage/Heap.h"
#include "support/RuntimeHeapWindows.h"

namespace {

void DoNotCount() noexcept {}

const bool watched = KivTests::WatchHeap({StorageTest::Strikes, DoNotCount, DoNotCount});

}  // namespace
