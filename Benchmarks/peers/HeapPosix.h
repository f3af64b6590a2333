#pragma once

#include <cstddef>

namespace Peers {

/// Where the memory comes from that a system works with.
enum class Heap {
    Warm,  ///< from earlier passes of the same process, which have given it back to the heap: nothing goes back to the system
    Fresh,  ///< from the system, page by page, in a process that has not had it before
};

/// To be called once in a process, before it works.
void SetUpHeap(Heap heap);

/// Bytes that this process holds: allocated from the heap with what the heap adds to them, and mapped beside it.
std::size_t GetHeldBytes();

}  // namespace Peers
