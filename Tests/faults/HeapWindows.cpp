// The heap below the operators `new` and `delete` of the whole program, its shared libraries included.

#include "faults/Heap.h"
#include "support/RuntimeHeapWindows.h"

namespace {

const bool watched = KivTests::WatchHeap({Faults::Strikes, Faults::AddLiveBlock, Faults::RemoveLiveBlock});

}  // namespace
