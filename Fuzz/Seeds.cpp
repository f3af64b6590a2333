// Makes the first inputs of every target, from small trees of every kind: `fuzz_seeds FOLDER` writes FOLDER/<target>/seed-<n>.

#include <cstdio>
#include <string>

#include <KivStorage/SaveTree.h>

#include "format/Framing.h"
#include "format/LittleEndian.h"
#include "persistence/RandomTrees.h"
#include "storage/Support.h"

namespace {

using StorageTest::Bytes;
namespace fs = std::filesystem;

Bytes Save(KivGenerics::Tree& tree) {
    Bytes file;
    KivStorage::SaveOptions options;
    options.withTransient = true;
    options.saveDespiteLosses = true;
    KivStorage::SaveTreeToMemory(&tree, file, options);
    return file;
}

/// The items of a file of one block.
Bytes ItemsOf(const Bytes& file) {
    const auto begin = file.begin() + static_cast<std::ptrdiff_t>(KivStorage::kHeaderSize + KivStorage::kLengthSize);
    const std::size_t length = KivStorage::GetLittle32(file.data() + KivStorage::kHeaderSize);
    return Bytes(begin, begin + static_cast<std::ptrdiff_t>(length));
}

/// Calls `use(type, payload, size)` for every item; a text's payload is its length with its units.
template <class Use>
void ForEachItem(const Bytes& items, Use use) {
    for (std::size_t next = 0; next < items.size();) {
        const std::uint8_t type = items[next];
        const std::uint8_t* const payload = items.data() + next + 1;
        auto size = static_cast<std::size_t>(KivStorage::ItemPayload(type));
        size += type == KivStorage::ItemText ? std::size_t{2} * KivStorage::GetLittle32(payload) : 0;
        use(type, payload, size);
        next += 1 + size;
    }
}

void Append(Bytes& to, const std::uint8_t* bytes, std::size_t count) {
    to.insert(to.end(), bytes, bytes + count);
}

/// The values alone: a stream that takes its bytes as they come asks for no more.
Bytes ForStream(const Bytes& items) {
    Bytes bytes;
    ForEachItem(items, [&](std::uint8_t type, const std::uint8_t* payload, std::size_t size) {
        const std::size_t left_out = type == KivStorage::ItemText ? 3 : 0;
        Append(bytes, payload, type == KivStorage::ItemText ? 1 : size);
        Append(bytes, payload + 1 + left_out, type == KivStorage::ItemText ? size - 4 : 0);
    });
    return bytes;
}

/// Each value with the answer to the call that reads it, 0 for success.
Bytes ForArchive(const Bytes& items) {
    Bytes bytes;
    ForEachItem(items, [&](std::uint8_t type, const std::uint8_t* payload, std::size_t size) {
        const bool isText = type == KivStorage::ItemText;
        Append(bytes, payload, isText ? 1 : size);
        Append(bytes, payload + 4, isText ? size - 4 : 0);
        bytes.push_back(0);
    });
    return bytes;
}

/// One call for each item, then as many to read.
Bytes ForCalls(const Bytes& items) {
    Bytes bytes = {0};
    Bytes reads;
    ForEachItem(items, [&](std::uint8_t type, const std::uint8_t* payload, std::size_t size) {
        const bool isText = type == KivStorage::ItemText;
        bytes.push_back(static_cast<std::uint8_t>(type - 1));
        reads.push_back(static_cast<std::uint8_t>(type - 1));
        Append(bytes, payload, isText ? 1 : size);
        Append(bytes, payload + 4, isText ? size - 4 : 0);
    });
    bytes.push_back(0xFF);
    Append(bytes, reads.data(), reads.size());
    return bytes;
}

Bytes ForItems(const Bytes& items, std::uint8_t blockPayload) {
    return StorageTest::Join({{0, blockPayload}, items});
}

/// Any bytes build some tree.
Bytes ForRoundTrip(const Bytes& items) {
    Bytes bytes;
    for (const std::uint8_t byte : items) {
        bytes.push_back(static_cast<std::uint8_t>(byte * 37 + 11));
    }
    return bytes;
}

/// A fault at some call, and what to save or load then: any bytes build some tree.
Bytes ForFaults(const Bytes& items, std::uint32_t seed) {
    const auto small = static_cast<std::uint8_t>(seed);
    const Bytes fault = {static_cast<std::uint8_t>(seed % 14), static_cast<std::uint8_t>(17 * seed), small, small};
    const bool loads = seed % 14 / 2 == 2 || seed % 14 / 2 == 3;
    return StorageTest::Join({fault, loads ? items : ForRoundTrip(items)});
}

/// What stands there before, a fault at some call of the system's, and what to save or load then.
Bytes ForSystem(const Bytes& items, std::uint32_t seed) {
    const auto small = static_cast<std::uint8_t>(seed);
    const Bytes fault = {small, static_cast<std::uint8_t>(37 * seed), small, small, 0};
    return StorageTest::Join({fault, ForRoundTrip(items)});
}

Bytes ForKey(std::uint32_t seed) {
    const char* const keys[] = {"",           "0:", "3:11:11:", "16:0:0:", "536870911:3:3:", "00042:4294967299:",
                                "8192:1:1:7", "15"};
    Bytes bytes;
    for (const char* unit = keys[seed % 8]; *unit != 0; ++unit) {
        bytes.insert(bytes.end(), {static_cast<std::uint8_t>(*unit), 0});
    }
    return bytes;
}

void Write(const fs::path& folder, const char* target, std::uint32_t seed, const Bytes& bytes) {
    fs::create_directories(folder / target);
    StorageTest::WriteFile(folder / target / ("seed-" + std::to_string(seed)), bytes);
}

void WriteSeeds(const fs::path& folder, std::uint32_t seed, KivGenerics::Tree& tree) {
    const Bytes file = Save(tree);
    const Bytes items = ItemsOf(file);
    Write(folder, "file", seed, file);
    Write(folder, "items", seed, ForItems(items, static_cast<std::uint8_t>(255 - seed)));
    Write(folder, "stream", seed, ForStream(items));
    Write(folder, "archive", seed, ForArchive(items));
    Write(folder, "calls", seed, ForCalls(items));
    Write(folder, "roundtrip", seed, ForRoundTrip(items));
    Write(folder, "faults", seed, ForFaults(items, seed));
    Write(folder, "system", seed, ForSystem(items, seed));
    Write(folder, "key", seed, ForKey(seed));
}

}  // namespace

int main(int count, char** names) {
    if (count != 2) {
        std::fprintf(stderr, "usage: fuzz_seeds FOLDER\n");
        return 2;
    }
    WriteSeeds(names[1], 0, *StorageTest::TreeOfEveryKind());
    for (std::uint32_t seed = 1; seed < 16; ++seed) {
        WriteSeeds(names[1], seed, *KivGenerics::Testing::NewRandomTree(seed, 3));
    }
    return 0;
}
