#pragma once

#include <cstdint>
#include <limits>

#include <KivGenerics/ObjectType.h>
#include <KivGenerics/ResultCode.h>

namespace KivStorage {

/// What a reader accepts at most; more is refused before memory is spent on it.
struct ReadLimits {
    /// Levels of composites, a tree's root being level 1. The stream allows two objects more than that: the one around
    /// the tree and that of a set at the bottom. The tree itself never loads more than KivGenerics::MaxLoadNesting.
    std::uint32_t nesting = static_cast<std::uint32_t>(KivGenerics::MaxLoadNesting);
    /// Bytes in all, framing included; by default any number. What is read at a time is one block, but a tree in memory takes
    /// several times its bytes on disk.
    std::uint64_t totalBytes = (std::numeric_limits<std::uint64_t>::max)();
    /// 16-bit units of one text. The tree itself never loads more than KivGenerics::MaxStringUnits.
    std::uint32_t stringUnits = KivGenerics::MaxStringUnits;
};

/// How a tree is saved.
struct SaveOptions {
    /// Transient nodes are saved too.
    bool withTransient = false;
    /// Saves even what FindUnsavedParts lists. The file may then hold less than the tree, or be one that does not load.
    bool saveDespiteLosses = false;
};

/// How a tree is loaded.
struct LoadOptions {
    ReadLimits limits;
    /// What the new tree is made for.
    KivGenerics::EnumOrvObjectType objectType = static_cast<KivGenerics::EnumOrvObjectType>(0);
};

}  // namespace KivStorage
