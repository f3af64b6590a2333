#pragma once

#include <cstdint>

#include <KivCOMShared/COrvSizeArchive.h>
#include <KivStorage/Export.h>

namespace KivStorage {

/// Adds up what Tree::SizeArchive reports: an estimate from above for maps, quick, and by kinds of values. SizeArchive is
/// exact.
class KIV_STORAGE_EXPORT SizeTotals final : public KivCOMShared::COrvSizeArchive {
public:
    SizeTotals() = default;
    ~SizeTotals() override;

    void AddSizes(std::int32_t shorts, std::int32_t doubles, std::int32_t guids, std::int32_t longs,
                  std::int32_t objects) override;

    std::int64_t GetShorts() const noexcept { return shorts_; }
    std::int64_t GetDoubles() const noexcept { return doubles_; }
    std::int64_t GetGuids() const noexcept { return guids_; }
    std::int64_t GetLongs() const noexcept { return longs_; }
    std::int64_t GetObjects() const noexcept { return objects_; }

private:
    std::int64_t shorts_ = 0;
    std::int64_t doubles_ = 0;
    std::int64_t guids_ = 0;
    std::int64_t longs_ = 0;
    std::int64_t objects_ = 0;
};

}  // namespace KivStorage
