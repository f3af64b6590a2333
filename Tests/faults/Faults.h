#pragma once

#include <cstddef>
#include <functional>

/// Makes allocations fail on purpose: those of the heap, whose operators this program replaces, and those of the forests'
/// buffers, which it wraps. Both count into one row, so that "the k-th allocation" means the k-th of either.
namespace Faults {

enum class Lasting { Once, ForGood };

/// As long as it lives, the k-th allocation from now on (counted from 1) fails, and, for good, every later one too.
class Armed {
public:
    Armed(long k, Lasting lasting);
    ~Armed();
    Armed(const Armed&) = delete;
    Armed& operator=(const Armed&) = delete;
    /// True when an allocation has failed.
    bool HasStruck() const;
};

/// As long as it lives, new forests get buffers that fail with the others.
class WrappedBuffers {
public:
    /// With `answersNull`, a failing buffer answers null, as a host's own may, instead of throwing.
    explicit WrappedBuffers(bool answersNull = false);
    ~WrappedBuffers();
    WrappedBuffers(const WrappedBuffers&) = delete;
    WrappedBuffers& operator=(const WrappedBuffers&) = delete;
};

/// How many blocks of the heap, and how many buffers, have been taken and not given back.
long GetLiveBlocks();
long GetLiveBuffers();

}  // namespace Faults
