// The file streams over a system that fails: files are opened, written, synced, renamed and read by calls that the program
// defines itself, one of which does what the input says.

#include <cerrno>
#include <string>
#include <vector>

#include <KivStorage/LoadTree.h>
#include <KivStorage/SaveTree.h>
#include <unistd.h>

#include "storage/Support.h"
#include "system/Calls.h"
#include "targets/GreatTrees.h"
#include "targets/Require.h"
#include "targets/system/SystemTargets.h"

namespace KivFuzz {
namespace {

using StorageTest::Bytes;
using SystemCalls::Fault;

/// What stands in the folder before a save.
enum class Before : std::uint8_t { Nothing, File, FileOfAnother, LinkToFile, LinkToNothing };
constexpr int kBefores = 5;

/// Who says that there is no such file, or no such folder, is believed: neither is among these.
int TakeError(Input& input) noexcept {
    constexpr int kErrors[] = {EIO,    ENOSPC, EINTR, EACCES, EEXIST, EPERM, EINVAL, ENOTSUP,
                               EDQUOT, EMFILE, EROFS, EBUSY,  ENOMEM, ELOOP, EFBIG,  EBADF};
    return kErrors[input.TakeByte() % 16];
}

Fault TakeFault(Input& input) noexcept {
    constexpr Fault::What kWhats[] = {Fault::What::Fail, Fault::What::Fail, Fault::What::DoHalf,
                                      Fault::What::DoNothing};
    Fault fault;
    const std::uint8_t how = input.TakeByte();
    fault.what = kWhats[how % 4];
    fault.at = 1 + input.TakeByte();
    fault.error = TakeError(input);
    // What is interrupted each time is tried again each time.
    fault.forGood = how >= 0x80 && fault.error != EINTR;
    return fault;
}

KivBase::ReturnPtrI<KivGenerics::Tree> TakeTree(Input& input) {
    auto tree = KivGenerics::CreateGenericTree(KivGenerics::EnumOrvObjectType(0));
    GrowTreeOfAnySize(*tree, input);
    return tree;
}

/// What a save writes, and whether it does.
struct Expected {
    KivStorage::Result result;
    Bytes bytes;
};

Expected SaveAsExpected(KivGenerics::Tree& tree, const KivStorage::SaveOptions& options) {
    Expected expected;
    expected.result = KivStorage::SaveTreeToMemory(&tree, expected.bytes, options);
    return expected;
}

/// The folder of this process, with what stood there before.
class Scene {
public:
    explicit Scene(Before before) : before_(before) {
        Clear();
        if (IsLink()) {
            std::filesystem::create_symlink("tree", GetFolder() / "link");
        }
        if (before != Before::Nothing && before != Before::LinkToNothing) {
            StorageTest::WriteFile(GetFile(), GetOld());
        }
        if (before == Before::FileOfAnother && ::chown(GetFile().c_str(), 1, 1) != 0) {
            errno = 0;  // Nobody but the superuser can.
        }
    }
    ~Scene() { Clear(); }
    Scene(const Scene&) = delete;
    Scene& operator=(const Scene&) = delete;

    /// What a host saves to.
    std::filesystem::path GetPath() const { return IsLink() ? GetFolder() / "link" : GetFile(); }

    /// The new file stands, whole, or nothing has changed; and there is nothing else beside them.
    void CheckAfterSave(bool isNew, const Bytes& expected) const {
        const bool hadFile = before_ != Before::Nothing && before_ != Before::LinkToNothing;
        const bool hasFile = std::filesystem::exists(GetFile());
        Require(hasFile == (isNew || hadFile), "A save leaves a file that should not be, or takes one away.");
        Require(!hasFile || StorageTest::ReadFile(GetFile()) == (isNew ? expected : GetOld()),
                "A save leaves neither the old file nor the new one, whole.");
        std::vector<std::string> names;
        if (IsLink()) {
            Require(std::filesystem::is_symlink(GetFolder() / "link"), "A save replaces the link to its file.");
            names.emplace_back("link");
        }
        if (hasFile) {
            names.emplace_back("tree");
        }
        Require(GetFolder().GetNames() == names, "A save leaves another file behind.");
    }

private:
    static const StorageTest::Folder& GetFolder() {
        static const StorageTest::Folder folder;
        return folder;
    }
    static std::filesystem::path GetFile() { return GetFolder() / "tree"; }
    static Bytes GetOld() { return StorageTest::Text("what stood there before"); }

    bool IsLink() const { return before_ == Before::LinkToFile || before_ == Before::LinkToNothing; }

    static void Clear() {
        for (const std::string& name : GetFolder().GetNames()) {
            std::filesystem::remove(GetFolder() / name.c_str());
        }
    }

    Before before_;
};

/// Runs `attempt` with the fault; whether it came to pass. Every file that is opened is closed.
template <class Attempt>
bool RunWith(const Fault& fault, Attempt attempt) {
    const int open = SystemCalls::CountOpenFiles();
    bool hasStruck = false;
    {
        const SystemCalls::Watch watch(fault);
        attempt();
        hasStruck = watch.HasStruck();
    }
    Require(SystemCalls::CountOpenFiles() == open, "A file is left open.");
    return hasStruck;
}

/// Half of what was asked for is no failure: the rest is asked for again.
bool MayFail(const Fault& fault, bool hasStruck) {
    return hasStruck && fault.what != Fault::What::DoHalf;
}

void SaveWith(const Fault& fault, Input& input, Before before, const KivStorage::SaveOptions& options) {
    const auto tree = TakeTree(input);
    const Expected expected = SaveAsExpected(*tree, options);
    const Scene scene(before);
    KivStorage::Result saved;
    const bool hasStruck = RunWith(fault, [&] { saved = KivStorage::SaveTree(tree.Get(), scene.GetPath(), options); });
    Require(expected.result.Ok() || !saved.Ok(), "What cannot be saved is saved.");
    Require(saved.Ok() || !expected.result.Ok() || MayFail(fault, hasStruck), "A save fails for no reason.");
    Require(saved.Ok() || saved.sentence.find(scene.GetPath().filename()) != std::string::npos,
            "A save that fails does not name its file.");
    // Where its folder alone cannot be synced, the new file stands.
    scene.CheckAfterSave(saved.Ok() || saved.code == KivStorage::StorageDirectoryNotSynced, expected.bytes);
}

void CheckLoaded(const KivStorage::LoadResult& loaded, const Expected& expected,
                 const KivStorage::SaveOptions& options) {
    Require(loaded.result.Ok() == static_cast<bool>(loaded.tree), "A refused load hands over a tree.");
    if (loaded.tree) {
        Require(SaveAsExpected(*loaded.tree, options).bytes == expected.bytes, "A load is not whole.");
    } else {
        Require(loaded.result.sentence.find("tree") != std::string::npos, "A load that fails does not name its file.");
    }
}

/// A file that loads from memory loads from the disk, whole, or the load says which file failed.
void LoadWith(const Fault& fault, Input& input, const KivStorage::SaveOptions& options) {
    const auto tree = TakeTree(input);
    const Expected expected = SaveAsExpected(*tree, options);
    const auto whole = KivStorage::LoadTreeFromMemory(expected.bytes.data(), expected.bytes.size());
    if (!whole.tree) {
        return;
    }
    const Scene scene(Before::File);
    StorageTest::WriteFile(scene.GetPath(), expected.bytes);
    KivStorage::LoadResult loaded;
    const bool hasStruck = RunWith(fault, [&] { loaded = KivStorage::LoadTree(scene.GetPath()); });
    Require(loaded.result.Ok() || MayFail(fault, hasStruck), "A load fails for no reason.");
    CheckLoaded(loaded, SaveAsExpected(*whole.tree, options), options);
}

}  // namespace

void RunSystem(const std::uint8_t* bytes, std::size_t count) {
    Input input(bytes, count);
    const std::uint8_t choice = input.TakeByte();
    const Fault fault = TakeFault(input);
    KivStorage::SaveOptions options;
    options.withTransient = choice % 2 == 1;
    options.saveDespiteLosses = true;
    const int scene = choice / 2 % (kBefores + 1);
    if (scene < kBefores) {
        SaveWith(fault, input, static_cast<Before>(scene), options);
    } else {
        LoadWith(fault, input, options);
    }
}

}  // namespace KivFuzz
