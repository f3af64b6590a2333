#include "persistence/LeafArchive.h"

#include <KivCOMShared/COrvSizeArchive.h>

namespace KivGenerics {

using KivCOMShared::COrvSizeArchive;
using KivCOMShared::COrvWriteArchive;

std::int32_t Integer::WriteToArchive(COrvWriteArchive* archive, bool) {
    return WriteValue(*this, archive);
}
std::int32_t Integer::ReadFromArchive(ArchiveDecoder& decoder, bool) {
    return ReadValue(*this, decoder);
}
std::int32_t Integer::SizeDefnArchive(COrvSizeArchive* sizer, bool) {
    sizer->AddSizes(0, 0, 0, 1, 0);
    return 0;
}

std::int32_t Boolean::WriteToArchive(COrvWriteArchive* archive, bool) {
    return WriteValue(*this, archive);
}
std::int32_t Boolean::ReadFromArchive(ArchiveDecoder& decoder, bool) {
    return ReadValue(*this, decoder);
}
std::int32_t Boolean::SizeDefnArchive(COrvSizeArchive* sizer, bool) {
    sizer->AddSizes(0, 0, 0, 1, 0);
    return 0;
}

std::int32_t Integer64::WriteToArchive(COrvWriteArchive* archive, bool) {
    return WriteValue(*this, archive);
}
std::int32_t Integer64::ReadFromArchive(ArchiveDecoder& decoder, bool) {
    return ReadValue(*this, decoder);
}
std::int32_t Integer64::SizeDefnArchive(COrvSizeArchive* sizer, bool) {
    sizer->AddSizes(0, 0, 0, 2, 0);
    return 0;
}

std::int32_t Double::WriteToArchive(COrvWriteArchive* archive, bool) {
    return WriteValue(*this, archive);
}
std::int32_t Double::ReadFromArchive(ArchiveDecoder& decoder, bool) {
    return ReadValue(*this, decoder);
}
std::int32_t Double::SizeDefnArchive(COrvSizeArchive* sizer, bool) {
    sizer->AddSizes(0, 1, 0, 0, 0);
    return 0;
}

std::int32_t GlobalID::WriteToArchive(COrvWriteArchive* archive, bool) {
    return WriteValue(*this, archive);
}
std::int32_t GlobalID::ReadFromArchive(ArchiveDecoder& decoder, bool) {
    return ReadValue(*this, decoder);
}
std::int32_t GlobalID::SizeDefnArchive(COrvSizeArchive* sizer, bool) {
    sizer->AddSizes(0, 0, 1, 0, 0);
    return 0;
}

std::int32_t String::WriteToArchive(COrvWriteArchive* archive, bool) {
    return WriteValue(*this, archive);
}
std::int32_t String::ReadFromArchive(ArchiveDecoder& decoder, bool) {
    return ReadValue(*this, decoder);
}
std::int32_t String::SizeDefnArchive(COrvSizeArchive* sizer, bool) {
    sizer->SizeString(value_);
    return 0;
}

}  // namespace KivGenerics
