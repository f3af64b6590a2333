#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include <KivGenerics/Tree.h>
#include <KivInspect/FileSource.h>
#include <KivInspect/Names.h>
#include <KivInspect/Sink.h>
#include <KivStorage/FileScanner.h>
#include <KivStorage/Result.h>

namespace KivInspect {

/// A stretch of a file that is not as it was written.
struct Damage {
    std::uint64_t offset = 0;
    std::uint64_t size = 0;  ///< 0 where something is missing
    std::string sentence;
};

/// What the checksums of a file say.
struct FileCheck {
    KivStorage::Result result;  ///< the first thing that is wrong; a success for a whole file
    std::vector<Damage> damage;
    std::uint64_t blocks = 0;
};

/// Reads a file from its beginning to its end and lists everything that is damaged. Memory grows with the damage alone.
FileCheck CheckFile(KivStorage::FileScanner& scanner, const Progress& progress = {});

/// Something in a tree that would not survive a save, or that is worth a look.
struct Finding {
    std::string key;  ///< the node's
    std::string reason;  ///< one word of its kind, for programs: "TextHasNul"
    std::string why;  ///< a sentence
    std::string advice;  ///< what to do, a sentence
};

/// How near a tree comes to a limit.
struct LimitUse {
    std::string name;
    std::uint64_t used = 0;
    std::uint64_t limit = 0;
    std::string key;  ///< of the node that comes nearest
};

struct CheckOptions {
    bool withTransient = false;  ///< what a save with transient nodes would do
    bool strict = false;  ///< also findings: nine tenths of a limit are used, ill-formed texts, temporary nodes
    const Names* names = nullptr;
};

struct TreeCheck {
    std::vector<Finding> findings;
    std::vector<LimitUse> limits;
};

/// What a save would do to a tree, and how far it is from every limit. Brings the tree's temporalities up to date, and changes
/// nothing else. Throws std::bad_alloc.
TreeCheck CheckTree(KivGenerics::Tree* tree, const CheckOptions& options = {});

/// For people. `file` may be null when there is none, `tree` when it was not looked at.
void WriteCheck(const FileCheck* file, const TreeCheck* tree, Sink& sink);
/// The same as one JSON object.
void WriteCheckJson(const FileCheck* file, const TreeCheck* tree, Sink& sink);

}  // namespace KivInspect
