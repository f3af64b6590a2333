#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include <KivBase/ReturnPtrI.h>
#include <KivGenerics/Tree.h>
#include <KivInspect/FileSource.h>
#include <KivInspect/Sink.h>
#include <KivStorage/FileScanner.h>
#include <KivStorage/Result.h>

namespace KivInspect {

/// Nodes of a damaged tree that could not be read.
struct LostNodes {
    std::string first;        ///< the key of the first; "" for the root
    std::string last;         ///< the key of the last, at the following indexes of the same parent
    std::uint64_t count = 1;  ///< how many there are, without what is below them
    std::string note;         ///< what is to be said of them; may be empty
};

/// A block that was put right again.
struct Repair {
    std::uint64_t offset = 0;  ///< of the byte that was wrong
    std::uint8_t was = 0;
    std::uint8_t is = 0;
};

struct SalvageOptions {
    bool repair = true;  ///< tries to put damaged blocks right, which takes seconds for each
    Progress progress;
};

struct SalvageResult {
    /// A success when the file is whole, or was put right; else the first thing that is wrong with it.
    KivStorage::Result result;
    KivBase::ReturnPtrI<KivGenerics::Tree> tree;  ///< what could be read; null when that is not even the root
    std::uint64_t nodes = 0;
    std::vector<LostNodes> lost;
    std::vector<Repair> repairs;
};

/// Reads all that can still be read of a damaged file.
///
/// Of a block that does not match its checksum nothing is believed, but where the change of one byte makes it match, it is put
/// right. Behind the last damage, the place in the tree is found again from the end: what is still open there, and how many
/// children are to come, must agree with what was announced before the damage. What lies between two damages has no such
/// proof and is lost. An element of a vector that is lost leaves an empty one in its place, so that the others keep their
/// keys.
///
/// The file is held in memory. Throws std::bad_alloc.
SalvageResult Salvage(KivStorage::FileScanner& scanner, const SalvageOptions& options = {});

/// The list of what was repaired and lost, for people.
void WriteSalvage(const SalvageResult& result, Sink& sink);

}  // namespace KivInspect
