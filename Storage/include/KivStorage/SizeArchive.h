#pragma once

#include <cstdint>

#include <KivCOMShared/COrvWriteArchive.h>
#include <KivStorage/Export.h>
#include <KivStorage/Result.h>

namespace KivGenerics {
class Tree;
}

namespace KivStorage {

/// An archive that keeps nothing and counts what a stream would write: `tree->SaveToArchive(&size, withTransient, 255)`,
/// then GetBytes is the saved file's size, to the byte.
///
/// Tree::SizeArchive can only estimate, since the header of a map is packed and its size shows when it is written.
class KIV_STORAGE_EXPORT SizeArchive final : public KivCOMShared::COrvWriteArchive {
public:
    SizeArchive() = default;
    ~SizeArchive() override;

    std::int32_t WriteShort(std::uint16_t value) override;
    std::int32_t WriteDouble(double value) override;
    std::int32_t WriteGUID(const GUID& value) override;
    std::int32_t WriteLong(std::int32_t value) override;
    std::int32_t WriteInt64(std::int64_t value) override;
    std::int32_t WriteWideString(const char16_t* units, std::uint32_t length) override;
    std::int32_t WriteVariant(const VARIANT* value) override;
    std::int32_t BeginObject(std::uint16_t tag) override;
    std::int32_t EndObject() override;

    /// The size of the whole, framing included.
    std::uint64_t GetBytes() const noexcept;
    /// Values, and the two ends of objects.
    std::uint64_t GetItems() const noexcept { return items_; }
    std::uint64_t GetBlocks() const noexcept;

private:
    std::int32_t Count(std::uint64_t bytes) noexcept;

    std::uint64_t items_ = 0;
    std::uint64_t itemBytes_ = 0;
};

/// What PredictSize answers; `bytes` is 0 unless the result is a success.
struct PredictedSize {
    Result result;
    std::uint64_t bytes = 0;
};

/// The exact size of the file that SaveTree would write. Costs as much as a save without its disk. Unlike a save it leaves a
/// read-only tree read-only.
KIV_STORAGE_EXPORT PredictedSize PredictSize(KivGenerics::Tree* tree, bool withTransient = false);

}  // namespace KivStorage
