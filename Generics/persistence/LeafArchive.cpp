// How scalar leaves are written, read and sized: each is a value or two, without an object of its own.

#include <KivCOMShared/COrvReadArchive.h>
#include <KivCOMShared/COrvSizeArchive.h>
#include <KivCOMShared/COrvWriteArchive.h>
#include <KivGenerics/Boolean.h>
#include <KivGenerics/Double.h>
#include <KivGenerics/GlobalID.h>
#include <KivGenerics/Integer.h>
#include <KivGenerics/Integer64.h>
#include <KivGenerics/String.h>

#include "persistence/ArchiveDecoder.h"
#include "persistence/Halves.h"

namespace KivGenerics {

using KivCOMShared::COrvSizeArchive;
using KivCOMShared::COrvWriteArchive;

std::int32_t Integer::WriteToArchive(COrvWriteArchive* archive, bool) {
    return archive->WriteLong(value_);
}
std::int32_t Integer::ReadFromArchive(ArchiveDecoder& decoder, bool) {
    return decoder.GetArchive()->ReadLong(&value_);
}
std::int32_t Integer::SizeDefnArchive(COrvSizeArchive* sizer, bool) {
    sizer->AddSizes(0, 0, 0, 1, 0);
    return 0;
}

std::int32_t Boolean::WriteToArchive(COrvWriteArchive* archive, bool) {
    return archive->WriteLong(value_ ? 1 : 0);
}
std::int32_t Boolean::ReadFromArchive(ArchiveDecoder& decoder, bool) {
    std::int32_t value = 0;
    const std::int32_t result = decoder.GetArchive()->ReadLong(&value);
    if (result >= 0) {
        value_ = value != 0;
    }
    return result;
}
std::int32_t Boolean::SizeDefnArchive(COrvSizeArchive* sizer, bool) {
    sizer->AddSizes(0, 0, 0, 1, 0);
    return 0;
}

std::int32_t Integer64::WriteToArchive(COrvWriteArchive* archive, bool) {
    const std::int32_t result = archive->WriteLong(GetLowHalf(value_));
    return result < 0 ? result : archive->WriteLong(GetHighHalf(value_));
}
std::int32_t Integer64::ReadFromArchive(ArchiveDecoder& decoder, bool) {
    std::int32_t low = 0;
    std::int32_t high = 0;
    std::int32_t result = decoder.GetArchive()->ReadLong(&low);
    if (result >= 0) {
        result = decoder.GetArchive()->ReadLong(&high);
    }
    if (result >= 0) {
        value_ = JoinHalves(low, high);
    }
    return result;
}
std::int32_t Integer64::SizeDefnArchive(COrvSizeArchive* sizer, bool) {
    sizer->AddSizes(0, 0, 0, 2, 0);
    return 0;
}

std::int32_t Double::WriteToArchive(COrvWriteArchive* archive, bool) {
    return archive->WriteDouble(value_);
}
std::int32_t Double::ReadFromArchive(ArchiveDecoder& decoder, bool) {
    return decoder.GetArchive()->ReadDouble(&value_);
}
std::int32_t Double::SizeDefnArchive(COrvSizeArchive* sizer, bool) {
    sizer->AddSizes(0, 1, 0, 0, 0);
    return 0;
}

std::int32_t GlobalID::WriteToArchive(COrvWriteArchive* archive, bool) {
    return archive->WriteGUID(value_);
}
std::int32_t GlobalID::ReadFromArchive(ArchiveDecoder& decoder, bool) {
    return decoder.GetArchive()->ReadGUID(&value_);
}
std::int32_t GlobalID::SizeDefnArchive(COrvSizeArchive* sizer, bool) {
    sizer->AddSizes(0, 0, 1, 0, 0);
    return 0;
}

std::int32_t String::WriteToArchive(COrvWriteArchive* archive, bool) {
    return archive->WriteString(value_);
}
std::int32_t String::ReadFromArchive(ArchiveDecoder& decoder, bool) {
    return decoder.GetArchive()->ReadWideString(value_);
}
std::int32_t String::SizeDefnArchive(COrvSizeArchive* sizer, bool) {
    sizer->SizeString(value_);
    return 0;
}

}  // namespace KivGenerics
