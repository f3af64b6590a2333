#include <KivStorage/SizeArchive.h>

#include "format/Failure.h"
#include "format/Framing.h"
#include "format/VariantBytes.h"
#include "tree/TreeChecks.h"

namespace KivStorage {
namespace {

constexpr std::uint64_t Size(ItemType type) noexcept {
    return static_cast<std::uint64_t>(ItemPayload(type));
}

}  // namespace

SizeArchive::~SizeArchive() = default;

std::int32_t SizeArchive::Count(std::uint64_t bytes) noexcept {
    items_ += 1;
    itemBytes_ += 1 + bytes;
    return StorageSuccess;
}

std::int32_t SizeArchive::WriteShort(std::uint16_t) {
    return Count(Size(ItemShort));
}

std::int32_t SizeArchive::WriteDouble(double) {
    return Count(Size(ItemDouble));
}

std::int32_t SizeArchive::WriteGUID(const GUID&) {
    return Count(Size(ItemGuid));
}

std::int32_t SizeArchive::WriteLong(std::int32_t) {
    return Count(Size(ItemLong));
}

/// The library's archive over a stream writes the two halves one after the other.
std::int32_t SizeArchive::WriteInt64(std::int64_t) {
    Count(Size(ItemLong));
    return Count(Size(ItemLong));
}

std::int32_t SizeArchive::WriteWideString(const char16_t* units, std::uint32_t length) {
    if (units == nullptr && length > 0) {
        return StorageNullPointer;
    }
    return Count(Size(ItemText) + std::uint64_t{length} * 2);
}

std::int32_t SizeArchive::WriteVariant(const VARIANT* value) {
    if (value == nullptr) {
        return StorageNullPointer;
    }
    std::uint8_t unused[10];
    return PutVariantBytes(unused, value) ? Count(Size(ItemVariant)) : StorageUnsupportedVariant;
}

std::int32_t SizeArchive::BeginObject(std::uint16_t) {
    return Count(Size(ItemBeginObject));
}

std::int32_t SizeArchive::EndObject() {
    return Count(Size(ItemEndObject));
}

std::uint64_t SizeArchive::GetBytes() const noexcept {
    return FramedSize(itemBytes_);
}

std::uint64_t SizeArchive::GetBlocks() const noexcept {
    return BlocksFor(itemBytes_);
}

PredictedSize PredictSize(KivGenerics::Tree* tree, bool withTransient) {
    PredictedSize predicted;
    predicted.result = CheckSavable(tree, withTransient, {});
    if (!predicted.result.Ok()) {
        return predicted;
    }
    // A successful save leaves a tree writable; asking for its size must not.
    const bool readOnly = tree->IsReadOnly();
    SizeArchive size;
    const std::int32_t code = tree->SaveToArchive(&size, withTransient, 255);
    if (readOnly) {
        tree->SetReadOnly();
    }
    if (code < 0) {
        predicted.result = Fail(code, {});
    } else {
        predicted.bytes = size.GetBytes();
    }
    return predicted;
}

}  // namespace KivStorage
