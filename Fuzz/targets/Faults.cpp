#include <algorithm>
#include <filesystem>
#include <new>

#include <KivGenerics/Exception.h>
#include <KivGenerics/Iterator.h>
#include <KivStorage/LoadTree.h>
#include <KivStorage/MemoryReadStream.h>
#include <KivStorage/SaveTree.h>
#include <KivStorage/SizeArchive.h>
#include <KivStorage/SizeTotals.h>
#include <KivStorage/UnsavedParts.h>

#include "core/Invariants.h"
#include "targets/FailingHost.h"
#include "targets/GreatTrees.h"
#include "targets/Growing.h"
#include "targets/HostileItems.h"
#include "targets/Require.h"
#include "targets/Targets.h"
#include "targets/TreeUse.h"

namespace KivFuzz {
namespace {

using namespace KivGenerics;

KivBase::ReturnPtrI<Tree> NewTree() {
    return CreateGenericTree(EnumOrvObjectType(0));
}

void CheckSound(Tree& tree) {
    Require(tree.IsEmpty() || CheckInvariants(tree.GetRoot()) == 0, "A fault breaks the tree's invariants.");
}

/// A tree that was built before a save fails, and is used after it.
template <class Save>
void SaveGrown(Input& input, const Fault& fault, Save save) {
    const auto tree = NewTree();
    GrowTree(*tree, input);
    const int changes = tree->GetChangeCount();
    const std::int32_t code = save(*tree);
    Require(!fault.HasStruck() || fault.GetCode() >= 0 || !fault.IsForGood() || code < 0,
            "A save into what fails for good succeeds.");
    Require(tree->GetChangeCount() == changes, "A save changes the tree.");
    UseTree(*tree);
}

/// A file of what is left of the input.
Bytes FrameRest(const Input& input) {
    return FrameItems(Bytes(input.GetBytes(), input.GetBytes() + input.GetCount()));
}

void LoadItems(Input& input, Fault& fault) {
    const Bytes file = FrameRest(input);
    const auto inner = KivStorage::MemoryReadStream::Create(file.data(), file.size());
    FailingReadStream stream(fault, *inner);
    const auto tree = NewTree();
    try {
        const std::int32_t code = tree->LoadFromStream(&stream);
        Require(!fault.HasStruck() || fault.GetCode() >= 0 || code < 0, "A load from what fails succeeds.");
    } catch (const Exception&) {
        // A tree may refuse what it is told to hold. What was read up to there stays, and must be sound.
    }
    UseTree(*tree);
}

/// Nodes that cannot be made are left out, or end what is done.
void UseWithoutMemory(Input& input, Fault& fault) {
    const FailingBuffers buffers(fault);
    try {
        const auto tree = NewTree();
        if (!tree) {
            return;
        }
        const Bytes file = FrameRest(input);
        const auto stream = KivStorage::MemoryReadStream::Create(file.data(), file.size());
        tree->LoadFromStream(stream.Get());
        CheckSound(*tree);
        const auto copy = NewTree();
        if (copy) {
            copy->CopyFromTree(tree.Get());
            CheckSound(*copy);
        }
    } catch (const std::bad_alloc&) {
        // What was done up to there is sound.
    } catch (const Exception&) {
        // So it is here.
    }
}

/// What loads whole trees and saves them answers a failure where a tree alone throws, or answers null.
void LoadAndSaveWithoutMemory(Input& input, Fault& fault) {
    const Bytes file = FrameRest(input);
    const FailingBuffers buffers(fault);
    const auto loaded = KivStorage::LoadTreeFromMemory(file.data(), file.size());
    Require(loaded.result.Ok() == static_cast<bool>(loaded.tree), "A refused load hands over a tree.");
    if (loaded.tree) {
        Bytes bytes;
        const auto saved = KivStorage::SaveTreeToMemory(loaded.tree.Get(), bytes);
        Require(saved.Ok() || bytes.empty(), "A refused save hands over bytes.");
        CheckSound(*loaded.tree);
    }
}

/// Somewhere in a folder that a save may or may not be able to write to.
std::filesystem::path OddPath(const std::filesystem::path& folder, Input& input) {
    switch (input.TakeByte() % 8) {
        case 0: return {};
        case 1: return folder;
        case 2: return folder / "missing" / "tree";
        case 3: return folder / std::string(300, 'x');
        case 4: return folder / "file" / "tree";
        case 5: return folder / "link";
        case 6: return folder / "circle";
        default: return folder / "file";
    }
}

void SaveAndLoadAnywhere(Input& input) {
    static const StorageTest::Folder folder;
    std::error_code ignored;
    std::filesystem::create_symlink("linked", folder / "link", ignored);
    std::filesystem::create_symlink("circle", folder / "circle", ignored);
    const auto path = OddPath(folder.GetPath(), input);
    const auto tree = NewTree();
    GrowTreeOfAnySize(*tree, input);
    KivStorage::SaveOptions options;
    options.withTransient = input.GetCount() % 2 == 0;
    const auto saved = KivStorage::SaveTree(tree.Get(), path, options);
    Require(saved.Ok() == saved.sentence.empty(), "A refusal has no sentence.");
    const auto loaded = KivStorage::LoadTree(path);
    Require(loaded.result.Ok() == static_cast<bool>(loaded.tree), "A refused load hands over a tree.");
    Require(!saved.Ok() || loaded.tree, "A saved file does not load.");
}

/// Nodes may be written one by one, while what they derive is out of date.
void SaveNodesAlone(Input& input, Fault& fault, bool withTransient) {
    const auto tree = NewTree();
    GrowTree(*tree, input);
    const auto iterator = tree->GetRoot()->GetIterator();
    for (int left = 4; left > 0; --left) {
        Node* const node = iterator->Next();
        if (node == nullptr) {
            return;
        }
        FailingWriteArchive archive(fault);
        node->WriteToArchive(&archive, withTransient);
        KivStorage::SizeTotals totals;
        node->SizeDefnArchive(&totals, withTransient);
        node->CalculateDerivedTemporality();
        KivStorage::SizeArchive size;
        tree->SaveToArchive(&size, withTransient, 255);
    }
}

template <class Call>
void Misuse(Call call) {
    try {
        call();
    } catch (const Exception&) {
        // It may be refused in this way, too.
    }
}

/// Null where something is needed.
void GiveNothing(Input& input, bool withTransient) {
    const auto tree = NewTree();
    if (input.TakeByte() % 2 == 0) {
        GrowTree(*tree, input);
    }
    Misuse([&] { tree->SaveToStream(nullptr, withTransient); });
    Misuse([&] { tree->SaveToArchive(nullptr, withTransient, 255); });
    Misuse([&] { tree->SizeArchive(nullptr, withTransient); });
    Misuse([&] { tree->LoadFromStream(nullptr); });
    Misuse([&] { tree->LoadFromArchive(nullptr); });
    Bytes bytes;
    Require(!KivStorage::LoadTreeFromMemory(nullptr, 1).result.Ok(), "Nothing at all is loaded.");
    KivStorage::SaveOptions options;
    options.saveDespiteLosses = withTransient;
    Require(!KivStorage::SaveTreeToMemory(nullptr, bytes, options).Ok(), "No tree at all is saved.");
    Require(!KivStorage::PredictSize(nullptr).result.Ok(), "No tree at all has a size.");
    Require(KivStorage::FindUnsavedParts(nullptr).empty(), "No tree at all has parts.");
    KivStorage::SizeArchive size;
    Require(size.WriteWideString(nullptr, 1) < 0 && size.WriteVariant(nullptr) < 0, "Nothing is sized.");
    size.WriteWideString(nullptr, 0);
    size.WriteVariant(StorageTest::Variant(input.TakeByte(), input.TakeNumber(8)));
    Require(!KivStorage::DescribeCode(input.TakeLong()).empty(), "A code has no sentence.");
}

}  // namespace

void RunFaults(const std::uint8_t* bytes, std::size_t count) {
    Input input(bytes, count);
    const std::uint8_t choice = input.TakeByte();
    Fault fault(input);
    const bool withTransient = choice % 2 == 1;
    switch (choice % 14 / 2) {
        case 0: {
            FailingWriteArchive archive(fault);
            SaveGrown(input, fault, [&](Tree& tree) { return tree.SaveToArchive(&archive, withTransient, choice); });
            break;
        }
        case 1: {
            FailingWriteStream stream(fault);
            SaveGrown(input, fault, [&](Tree& tree) { return tree.SaveToStream(&stream, withTransient); });
            break;
        }
        case 2: LoadItems(input, fault); break;
        case 3: withTransient ? LoadAndSaveWithoutMemory(input, fault) : UseWithoutMemory(input, fault); break;
        case 4: SaveNodesAlone(input, fault, withTransient); break;
        case 5: GiveNothing(input, withTransient); break;
        default: SaveAndLoadAnywhere(input); break;
    }
}

}  // namespace KivFuzz
