#include <fstream>

#include <KivGenerics/Integer.h>
#include <KivGenerics/String.h>
#include <KivStorage/LoadTree.h>
#include <KivStorage/SaveTree.h>
#include <gtest/gtest.h>

#include "storage/Support.h"

using namespace KivGenerics;
using namespace KivStorage;
using namespace StorageTest;

namespace {

Bytes Golden(const char* name) {
    return ReadFile(std::filesystem::path(KIV_TEST_DATA) / name);
}

std::int32_t CodeOf(const Bytes& bytes) {
    return LoadTreeFromMemory(bytes.data(), bytes.size()).result.code;
}

/// A failure of the framing, the kinds of which are all in one range.
bool IsRefusedByTheFraming(std::int32_t code) {
    return static_cast<std::uint32_t>(code) >= 0xA0530010 && static_cast<std::uint32_t>(code) <= 0xA0530018;
}

const char* const kEveryKind =
    " Map tag 1 default\n"
    "0: Map tag 4100 persistent\n"
    "0:1: Integer tag 1 persistent = -2\n"
    "0:2: GlobalID tag 1 persistent = {12345678-9ABC-DEF0-0102-030405060708}\n"
    "0:3: String tag 1 persistent = \"K\xC3\xA4se\"\n"
    "0:4: Double tag 1 persistent = 0.5\n"
    "0:5: Boolean tag 1 persistent = true\n"
    "0:6: Vector tag 1 persistent\n"
    "0:6:0: Integer tag 1 default = 7\n"
    "0:6:1: Integer tag 1 default = 8\n"
    "0:7: Map tag 70000 persistent\n"
    "0:8: IntegerSet tag 1 persistent = {-1}\n"
    "0:9: IdSet tag 1 persistent = {{12345678-9ABC-DEF0-0102-030405060708}}\n"
    "0:10: StringSet tag 1 persistent = {\"a\"}\n"
    "0:11: DoubleSet tag 1 persistent = {2}\n"
    "0:12: Integer64 tag 1 persistent = 4294967298\n";

TEST(GoldenTest, TheFileOfEveryKindLoadsAsWhatWasSaved) {
    const auto loaded = LoadTree(std::filesystem::path(KIV_TEST_DATA) / "tree-of-every-kind.kiv");
    ASSERT_EQ("", loaded.result.sentence);
    EXPECT_EQ(kEveryKind, Describe(loaded.tree.Get()));
}

TEST(GoldenTest, TheSameTreeIsSavedAsTheSameBytes) {
    Bytes bytes;
    ASSERT_EQ("", SaveTreeToMemory(TreeOfEveryKind().Get(), bytes).sentence);
    EXPECT_EQ(ToHex(Golden("tree-of-every-kind.kiv")), ToHex(bytes));
    EXPECT_EQ(303u, bytes.size());
}

TEST(GoldenTest, EveryFlippedBitIsRefused) {
    const Bytes golden = Golden("tree-of-every-kind.kiv");
    ASSERT_EQ(303u, golden.size());
    for (std::size_t bit = 0; bit < golden.size() * 8; ++bit) {
        Bytes bytes = golden;
        bytes[bit / 8] = static_cast<std::uint8_t>(bytes[bit / 8] ^ (1u << (bit % 8)));
        const auto loaded = LoadTreeFromMemory(bytes.data(), bytes.size());
        ASSERT_TRUE(IsRefusedByTheFraming(loaded.result.code)) << "bit " << bit << ": " << loaded.result.sentence;
        ASSERT_EQ(nullptr, loaded.tree.Get());
        ASSERT_NE(std::string::npos, loaded.result.sentence.find("(memory, block ")) << loaded.result.sentence;
    }
}

TEST(GoldenTest, EveryTruncationIsRefused) {
    const Bytes golden = Golden("tree-of-every-kind.kiv");
    for (std::size_t size = 0; size < golden.size(); ++size) {
        ASSERT_EQ(StorageTruncated, CodeOf(Bytes(golden.begin(), golden.begin() + static_cast<std::ptrdiff_t>(size))))
            << size;
    }
}

TEST(GoldenTest, EveryInsertedByteIsRefused) {
    const Bytes golden = Golden("tree-of-every-kind.kiv");
    for (std::size_t at = 0; at <= golden.size(); ++at) {
        for (int value = 0; value < 256; ++value) {
            Bytes bytes = golden;
            bytes.insert(bytes.begin() + static_cast<std::ptrdiff_t>(at), static_cast<std::uint8_t>(value));
            ASSERT_TRUE(IsRefusedByTheFraming(CodeOf(bytes))) << value << " at " << at;
        }
    }
}

TEST(GoldenTest, EveryDeletedByteIsRefused) {
    const Bytes golden = Golden("tree-of-every-kind.kiv");
    for (std::size_t at = 0; at < golden.size(); ++at) {
        Bytes bytes = golden;
        bytes.erase(bytes.begin() + static_cast<std::ptrdiff_t>(at));
        ASSERT_TRUE(IsRefusedByTheFraming(CodeOf(bytes))) << at;
    }
}

TEST(GoldenTest, EveryTwoSwappedNeighboursAreRefused) {
    const Bytes golden = Golden("tree-of-every-kind.kiv");
    for (std::size_t at = 0; at + 1 < golden.size(); ++at) {
        Bytes bytes = golden;
        std::swap(bytes[at], bytes[at + 1]);
        if (bytes != golden) {
            ASSERT_TRUE(IsRefusedByTheFraming(CodeOf(bytes))) << at;
        }
    }
}

TEST(GoldenTest, TwoFilesJoinedAreRefused) {
    const Bytes golden = Golden("tree-of-every-kind.kiv");
    const Bytes other = Golden("annotated-tree.kiv");
    EXPECT_EQ(StorageTrailingBytes, CodeOf(Join({golden, golden})));
    EXPECT_EQ(StorageTrailingBytes, CodeOf(Join({golden, other})));
    EXPECT_EQ(0, CodeOf(golden));
}

TEST(GoldenTest, ADamagedFileOnDiskIsRefusedLikeOneInMemory) {
    const Folder folder;
    const Bytes golden = Golden("tree-of-every-kind.kiv");
    for (std::size_t at = 0; at < golden.size(); ++at) {
        Bytes bytes = golden;
        bytes[at] ^= 0x80;
        WriteFile(folder / "tree", bytes);
        const auto loaded = LoadTree(folder / "tree");
        ASSERT_EQ(CodeOf(bytes), loaded.result.code);
        ASSERT_LT(loaded.result.code, 0);
        ASSERT_NE(std::string::npos, loaded.result.sentence.find((folder / "tree").string())) << loaded.result.sentence;
    }
}

/// The bytes in the document's table; each line begins with its offset.
Bytes AnnotatedBytes() {
    std::ifstream document(std::filesystem::path(KIV_TEST_DATA) / ".." / ".." / "Docs" / "file-format.md");
    Bytes bytes;
    std::string line;
    while (std::getline(document, line)) {
        const std::string digits = line.substr(0, 4);
        if (line.size() < 57 || digits.find_first_not_of("0123456789ABCDEF") != std::string::npos ||
            line.substr(4, 4) != "    ") {
            continue;
        }
        EXPECT_EQ(bytes.size(), std::stoul(digits, nullptr, 16)) << line;
        const Bytes part = FromHex(line.substr(8, 49));
        bytes.insert(bytes.end(), part.begin(), part.end());
    }
    return bytes;
}

TEST(GoldenTest, TheDocumentAnnotatesEveryByteOfAFileThatIsReallyWritten) {
    const Bytes golden = Golden("annotated-tree.kiv");
    ASSERT_EQ(126u, golden.size());
    EXPECT_EQ(ToHex(golden), ToHex(AnnotatedBytes()));

    const auto tree = NewTree();
    auto* const map = static_cast<Map*>(NewRootMap(tree.Get())->NewNode(0, NodeTypeMap, false, SemanticTag(4100)));
    static_cast<Integer*>(map->NewNode(1, NodeTypeInteger))->Set(42);
    static_cast<String*>(map->NewNode(3, NodeTypeString))->Set(u"Hi");
    Bytes bytes;
    ASSERT_EQ("", SaveTreeToMemory(tree.Get(), bytes).sentence);
    EXPECT_EQ(ToHex(golden), ToHex(bytes));

    const auto loaded = LoadTreeFromMemory(golden.data(), golden.size());
    ASSERT_EQ("", loaded.result.sentence);
    EXPECT_EQ(
        " Map tag 1 default\n"
        "0: Map tag 4100 persistent\n"
        "0:1: Integer tag 1 persistent = 42\n"
        "0:3: String tag 1 persistent = \"Hi\"\n",
        Describe(loaded.tree.Get()));
}

}  // namespace
