#pragma once

#include <cstdint>

#include <KivBase/Export.h>
#include <KivBase/WString.h>

namespace KivCOMShared {

/// What a host gives to be told, before a save, how much of each kind of value to expect.
class KIV_PLATFORM_EXPORT COrvSizeArchive {
public:
    virtual ~COrvSizeArchive();
    /// Adds to the running totals.
    virtual void AddSizes(std::int32_t shorts, std::int32_t doubles, std::int32_t guids, std::int32_t longs,
                          std::int32_t objects) = 0;

    /// Adds one text to the totals of texts.
    void SizeString(const KivBase::WString& text) noexcept {
        strings_ += 1;
        stringUnits_ += text.size();
    }
    /// How many texts were added.
    std::uint64_t GetStrings() const noexcept { return strings_; }
    /// How many 16-bit code units these texts hold.
    std::uint64_t GetStringUnits() const noexcept { return stringUnits_; }

protected:
    COrvSizeArchive() = default;
    COrvSizeArchive(const COrvSizeArchive&) = default;
    COrvSizeArchive& operator=(const COrvSizeArchive&) = default;

private:
    std::uint64_t strings_ = 0;
    std::uint64_t stringUnits_ = 0;
};

}  // namespace KivCOMShared
