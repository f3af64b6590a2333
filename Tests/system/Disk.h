#pragma once

#include <cstdint>
#include <map>
#include <optional>
#include <random>
#include <string>
#include <vector>

#include "system/Calls.h"
#include "system/Saves.h"

/// A file system that keeps no promise but those of syncing: what has not been synced when the power fails may be there,
/// may be missing, and may be there without what was done before it. Sectors of 512 bytes are written whole.
class Disk {
public:
    static constexpr std::size_t kSector = 512;

    /// A disk with one file, which is safe.
    Disk(const std::string& path, const Bytes& bytes);

    void Do(const SystemCalls::Call& call);
    /// What a file holds when the power fails now; nothing when there is no such file.
    std::optional<Bytes> FailAndRead(const std::string& path, std::mt19937& random) const;

private:
    struct File {
        Bytes bytes;
        /// As far as it is safe.
        Bytes synced;
    };
    /// A change of the folder that may be lost: the name that it gives, and the one that it takes away.
    struct Change {
        std::string name;
        std::string gone;
        std::size_t file;
    };

    static Bytes Tear(const File& file, std::mt19937& random);

    std::vector<File> files_;
    /// What the names stand for: now, and as far as that is safe.
    std::map<std::string, std::size_t> names_;
    std::map<std::string, std::size_t> syncedNames_;
    std::vector<Change> changes_;
};
