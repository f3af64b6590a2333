#include <KivCOMShared/COrvReadArchive.h>
#include <KivCOMShared/COrvSizeArchive.h>
#include <KivCOMShared/COrvWriteArchive.h>

#include <limits>

namespace KivCOMShared {
namespace {

constexpr auto kStringTooLong = static_cast<std::int32_t>(0x80044AEA);

}  // namespace

COrvWriteArchive::~COrvWriteArchive() = default;
COrvReadArchive::~COrvReadArchive() = default;
COrvSizeArchive::~COrvSizeArchive() = default;

std::int32_t COrvWriteArchive::WriteString(const KivBase::WString& text) {
    if (text.size() > (std::numeric_limits<std::uint32_t>::max)()) {
        return kStringTooLong;
    }
    return WriteWideString(text.data(), static_cast<std::uint32_t>(text.size()));
}

}  // namespace KivCOMShared
