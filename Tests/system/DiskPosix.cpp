#include <algorithm>

#include "system/Disk.h"

using SystemCalls::Kind;

Disk::Disk(const std::string& path, const Bytes& bytes)
    : files_{{bytes, bytes}}, names_{{path, 0}}, syncedNames_(names_) {}

void Disk::Do(const SystemCalls::Call& call) {
    const auto found = names_.find(call.path);
    if (call.kind == Kind::Open && call.creates) {
        files_.emplace_back();
        names_[call.path] = files_.size() - 1;
        changes_.push_back({call.path, {}, files_.size() - 1});
    } else if (call.kind == Kind::Sync && found == names_.end()) {
        // The folder itself: it has no entry here.
        syncedNames_ = names_;
        changes_.clear();
    } else if (found == names_.end()) {
        return;
    } else if (call.kind == Kind::Write) {
        Bytes& bytes = files_[found->second].bytes;
        bytes.insert(bytes.end(), call.bytes.begin(), call.bytes.end());
    } else if (call.kind == Kind::Sync) {
        files_[found->second].synced = files_[found->second].bytes;
    } else if (call.kind == Kind::Rename) {
        changes_.push_back({call.newPath, call.path, found->second});
        names_[call.newPath] = found->second;
        names_.erase(call.path);
    } else if (call.kind == Kind::Unlink) {
        changes_.push_back({{}, call.path, found->second});
        names_.erase(found);
    }
}

// Each sector is as it was last written, or as it was when it was synced, or zero where it was not there then. The length is
// any between the two.
Bytes Disk::Tear(const File& file, std::mt19937& random) {
    if (file.bytes == file.synced) {
        return file.synced;
    }
    const std::size_t least = std::min(file.bytes.size(), file.synced.size());
    const std::size_t most = std::max(file.bytes.size(), file.synced.size());
    Bytes torn(random() % 2 == 0 ? most : std::uniform_int_distribution<std::size_t>(least, most)(random));
    for (std::size_t at = 0; at < torn.size(); at += kSector) {
        const Bytes& from = random() % 2 == 0 ? file.bytes : file.synced;
        for (std::size_t i = at; i < std::min({at + kSector, torn.size(), from.size()}); ++i) {
            torn[i] = from[i];
        }
    }
    return torn;
}

std::optional<Bytes> Disk::FailAndRead(const std::string& path, std::mt19937& random) const {
    std::map<std::string, std::size_t> names = syncedNames_;
    for (const Change& change : changes_) {
        if (random() % 2 == 0) {
            names.erase(change.gone);
            if (!change.name.empty()) {
                names[change.name] = change.file;
            }
        }
    }
    const auto found = names.find(path);
    return found != names.end() ? std::optional(Tear(files_[found->second], random)) : std::nullopt;
}
