#pragma once

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <vector>

#include "Workload.h"

namespace Peers {

enum class Operation { Build, Walk, Lookup, Path, Set, Copy, Compare, Save, Load, Release };
inline constexpr int kOperationCount = 10;

/// What a walk saw: numbers add their value, texts and GUIDs the bytes (own: units) they have.
struct Seen {
    std::int64_t nodes = 0;
    std::int64_t sum = 0;
};

/// One library, as its best users would use it. Holds the tree that was built, its copy, the saved bytes and the tree loaded from
/// them. Only what the operations name is measured.
class System {
public:
    System() = default;
    System(const System&) = delete;
    System& operator=(const System&) = delete;
    virtual ~System() = default;

    /// Whether it does the operation at all; the reason why not stands in the head of its file.
    virtual bool Can(Operation, const Workload&) const { return true; }
    virtual bool HasSets() const { return false; }
    /// What a GUID adds to a walk's sum.
    virtual int GuidLength() const { return 16; }

    virtual void Build(const Workload& workload) = 0;
    virtual Seen Walk() const = 0;
    /// The sum of what stands at the places: the values of leaves, and 1 for each composite.
    virtual std::int64_t Lookup(const std::vector<Place>&) const { return 0; }
    /// How many of the places are elements of their sets; for systems that have sets.
    virtual std::int64_t Contains(const std::vector<Place>&) const { return 0; }
    /// Makes the texts that FindPaths looks up.
    virtual void PreparePaths(const std::vector<Place>&) {}
    virtual std::int64_t FindPaths() const { return 0; }
    /// Sets the i-th place to i; a Boolean to whether i is odd.
    virtual void Set(const std::vector<Place>&) {}
    virtual void Copy() = 0;
    virtual bool EqualsCopy() const = 0;
    /// Returns the number of bytes.
    virtual std::size_t Save() = 0;
    virtual void Load() = 0;
    /// Walks what was loaded.
    virtual Seen WalkLoaded() const = 0;
    virtual void Release() = 0;
    /// Lets go of the copy, the saved bytes and what was loaded.
    virtual void ReleaseOthers() = 0;
};

struct SystemEntry {
    const char* name;
    const char* option;
    std::unique_ptr<System> (*make)();
    /// Operations that are one copy of bytes, whatever the tree is: shown, but not counted.
    std::vector<Operation> flat = {};

    bool IsCounted(Operation operation) const { return std::find(flat.begin(), flat.end(), operation) == flat.end(); }
};

std::unique_ptr<System> MakeOwn();
std::unique_ptr<System> MakeOwnOneByOne();
std::unique_ptr<System> MakeMsgpack();
std::unique_ptr<System> MakeUnknownFields();
std::unique_ptr<System> MakeRapidJson();
std::unique_ptr<System> MakeBoostJson();
std::unique_ptr<System> MakeNlohmann();
std::unique_ptr<System> MakePugixml();
std::unique_ptr<System> MakeProtobuf();
std::unique_ptr<System> MakeCapnProto();
std::unique_ptr<System> MakeFlexBuffers();
std::unique_ptr<System> MakeVariantMap();

}  // namespace Peers
