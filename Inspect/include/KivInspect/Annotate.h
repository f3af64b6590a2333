#pragma once

#include <cstdint>
#include <limits>

#include <KivInspect/FileSource.h>
#include <KivInspect/Names.h>
#include <KivInspect/Sink.h>
#include <KivStorage/FileScanner.h>
#include <KivStorage/Result.h>

namespace KivInspect {

struct AnnotateOptions {
    std::uint64_t from = 0;  ///< lines that end before this byte are left out
    std::uint64_t to = (std::numeric_limits<std::uint64_t>::max)();  ///< and those that begin here or behind it
    Progress progress;
};

/// Writes a saved tree byte by byte, a line for each item: where it stands, its bytes in hexadecimal, what it means. Memory
/// grows with the depth of the tree alone.
///
/// Damage is marked where it is, and ends nothing; as long as items can be told apart they are shown. Answers the first thing that
/// is wrong, or a success. Throws std::bad_alloc and what the sink throws.
KivStorage::Result Annotate(KivStorage::FileScanner& scanner, Sink& sink, const AnnotateOptions& options = {});

}  // namespace KivInspect
