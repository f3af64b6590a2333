#include <KivCOMShared/COrvReadArchive.h>
#include <KivCOMShared/COrvSizeArchive.h>
#include <KivCOMShared/COrvWriteArchive.h>

namespace KivCOMShared {

COrvWriteArchive::~COrvWriteArchive() = default;
COrvReadArchive::~COrvReadArchive() = default;
COrvSizeArchive::~COrvSizeArchive() = default;

std::int32_t COrvWriteArchive::WriteString(const KivBase::WString& text) {
    return WriteWideString(text.data(), static_cast<std::uint32_t>(text.size()));
}

}  // namespace KivCOMShared
