#include "storage/Support.h"

#include <algorithm>
#include <atomic>
#include <chrono>
#include <cstring>
#include <fstream>
#include <iterator>

#include <KivGenerics/Boolean.h>
#include <KivGenerics/Children.h>
#include <KivGenerics/Double.h>
#include <KivGenerics/DoubleSet.h>
#include <KivGenerics/GlobalID.h>
#include <KivGenerics/IdSet.h>
#include <KivGenerics/Integer.h>
#include <KivGenerics/Integer64.h>
#include <KivGenerics/IntegerSet.h>
#include <KivGenerics/String.h>
#include <KivGenerics/StringSet.h>
#include <KivGenerics/ToText.h>

#define XXH_INLINE_ALL
#include <xxhash.h>

namespace StorageTest {

using namespace KivGenerics;

namespace {

void AddLittle(Bytes& to, std::uint64_t value, int bytes) {
    for (int i = 0; i < bytes; ++i) {
        to.push_back(static_cast<std::uint8_t>(value >> (8 * i)));
    }
}

std::uint64_t Hash(const std::uint8_t* bytes, std::size_t count, std::uint64_t seed) {
    return XXH3_64bits_withSeed(bytes, count, seed);
}

void DescribeNode(Node* node, EnumOrvGenericsTemporality limit, bool isElement, std::string& text) {
    if (!node->ShouldVisit(limit) && !(isElement && limit == TemporalityTransient)) {
        return;
    }
    KivBase::WString key;
    node->GetKey(key);
    text += KivBase::ToUtf8(key) + " " + ToText(node->GetType());
    text += " tag " + std::to_string(node->GetSemanticTag()) + " " + ToText(node->GetTemporality());
    if (!IsCompositeType(node->GetType())) {
        text += " = " + ToText(node);
    }
    text += "\n";
    for (Node* const child : Children(node)) {
        DescribeNode(child, limit, node->GetType() == NodeTypeVector, text);
    }
}

}  // namespace

Folder::Folder() {
    static std::atomic<int> count{0};
    const auto now = std::chrono::steady_clock::now().time_since_epoch().count();
    path_ = std::filesystem::temp_directory_path() /
            ("storage-" + std::to_string(now) + "-" + std::to_string(count.fetch_add(1)));
    std::filesystem::create_directories(path_);
    // Links in the way to the folder for temporary files are none of the tests' business.
    path_ = std::filesystem::canonical(path_);
}

Folder::~Folder() {
    std::error_code ignored;
    std::filesystem::remove_all(path_, ignored);
}

std::vector<std::string> Folder::GetNames() const {
    std::vector<std::string> names;
    for (const auto& entry : std::filesystem::directory_iterator(path_)) {
        names.push_back(entry.path().filename().u8string());
    }
    std::sort(names.begin(), names.end());
    return names;
}

Bytes ReadFile(const std::filesystem::path& path) {
    std::ifstream file(path, std::ios::binary);
    return Bytes(std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>());
}

void WriteFile(const std::filesystem::path& path, const Bytes& bytes) {
    std::ofstream file(path, std::ios::binary | std::ios::trunc);
    file.write(reinterpret_cast<const char*>(bytes.data()), static_cast<std::streamsize>(bytes.size()));
}

Bytes Text(const char* text) {
    return Bytes(text, text + std::char_traits<char>::length(text));
}

std::string ToHex(const Bytes& bytes) {
    std::string hex;
    for (const std::uint8_t byte : bytes) {
        hex += hex.empty() ? "" : " ";
        hex += "0123456789ABCDEF"[byte >> 4];
        hex += "0123456789ABCDEF"[byte & 15];
    }
    return hex;
}

Bytes FromHex(const std::string& hex) {
    Bytes bytes;
    for (std::size_t i = 0; i + 1 < hex.size(); ++i) {
        if (hex[i] != ' ' && hex[i] != '\n') {
            bytes.push_back(static_cast<std::uint8_t>(std::stoi(hex.substr(i, 2), nullptr, 16)));
            ++i;
        }
    }
    return bytes;
}

Variant::Variant(std::uint16_t type, std::uint64_t value) {
    std::memcpy(bytes_, &type, sizeof type);
    std::memcpy(bytes_ + 8, &value, sizeof value);
}

std::uint16_t Variant::GetType() const {
    std::uint16_t type = 0;
    std::memcpy(&type, bytes_, sizeof type);
    return type;
}

std::uint64_t Variant::GetValue() const {
    std::uint64_t value = 0;
    std::memcpy(&value, bytes_ + 8, sizeof value);
    return value;
}

Bytes Join(const std::vector<Bytes>& parts) {
    Bytes all;
    for (const Bytes& part : parts) {
        all.insert(all.end(), part.begin(), part.end());
    }
    return all;
}

Bytes Frame(const Bytes& items, std::uint64_t count, std::size_t blockPayload) {
    static const Bytes header = FromHex("89 4B 49 56 0D 0A 1A 0A 01 00 00 00 00 00 00 00");
    Bytes file = header;
    AddLittle(file, Hash(file.data(), 16, 0), 8);
    std::uint64_t blocks = 0;
    std::uint64_t chain = 0;
    for (std::size_t start = 0; start < items.size(); start += blockPayload) {
        const std::size_t length = std::min(blockPayload, items.size() - start);
        Bytes block;
        AddLittle(block, length, 4);
        block.insert(block.end(), items.begin() + static_cast<std::ptrdiff_t>(start),
                     items.begin() + static_cast<std::ptrdiff_t>(start + length));
        const std::uint64_t hash = Hash(block.data(), block.size(), ++blocks);
        AddLittle(block, hash, 8);
        Bytes link;
        AddLittle(link, hash, 8);
        chain = Hash(link.data(), 8, chain);
        file.insert(file.end(), block.begin(), block.end());
    }
    Bytes trailer;
    AddLittle(trailer, 0, 4);
    AddLittle(trailer, blocks, 8);
    AddLittle(trailer, count, 8);
    AddLittle(trailer, items.size(), 8);
    AddLittle(trailer, chain, 8);
    AddLittle(trailer, Hash(trailer.data(), trailer.size(), blocks + 1), 8);
    file.insert(file.end(), trailer.begin(), trailer.end());
    return file;
}

KivBase::ReturnPtrI<Tree> NewTree() {
    return CreateGenericTree(static_cast<EnumOrvObjectType>(0));
}

Map* NewRootMap(Tree* tree, int tag) {
    return static_cast<Map*>(tree->NewRoot(NodeTypeMap, false, static_cast<SemanticTag>(tag)));
}

KivBase::ReturnPtrI<Tree> TreeOfEveryKind() {
    auto tree = NewTree();
    auto* const map = static_cast<Map*>(NewRootMap(tree.Get())->NewNode(0, NodeTypeMap, false, SemanticTag(4100)));
    const GUID id = {0x12345678, 0x9ABC, 0xDEF0, {1, 2, 3, 4, 5, 6, 7, 8}};
    static_cast<Integer*>(map->NewNode(1, NodeTypeInteger))->Set(-2);
    static_cast<GlobalID*>(map->NewNode(2, NodeTypeGlobalID))->Set(id);
    static_cast<String*>(map->NewNode(3, NodeTypeString))->Set(u"K\u00E4se");
    static_cast<Double*>(map->NewNode(4, NodeTypeDouble))->Set(0.5);
    static_cast<Boolean*>(map->NewNode(5, NodeTypeBoolean))->Set(true);
    auto* const vector = static_cast<Vector*>(map->NewNode(6, NodeTypeVector));
    static_cast<Integer*>(vector->Add(NodeTypeInteger))->Set(7);
    static_cast<Integer*>(vector->Add(NodeTypeInteger))->Set(8);
    map->NewNode(7, NodeTypeMap, false, SemanticTag(70000));
    static_cast<IntegerSet*>(map->NewNode(8, NodeTypeIntegerSet))->Add(-1);
    static_cast<IdSet*>(map->NewNode(9, NodeTypeIdSet))->Add(id);
    static_cast<StringSet*>(map->NewNode(10, NodeTypeStringSet))->Add(u"a");
    static_cast<DoubleSet*>(map->NewNode(11, NodeTypeDoubleSet))->Add(2.0);
    static_cast<Integer64*>(map->NewNode(12, NodeTypeInteger64))->Set(0x100000002LL);
    return tree;
}

std::string Describe(Tree* tree, bool withTransient) {
    std::string text;
    tree->UpdateDerivedTemporality();
    if (tree->GetRoot() != nullptr) {
        DescribeNode(tree->GetRoot(), withTransient ? TemporalityTransient : TemporalityPersistent, false, text);
    }
    return text;
}

}  // namespace StorageTest
