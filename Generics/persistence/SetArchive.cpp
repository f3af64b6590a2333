// How sets are written, read and sized: an object with a count and the elements in ascending order.

#include <utility>

#include <KivCOMShared/COrvReadArchive.h>
#include <KivCOMShared/COrvSizeArchive.h>
#include <KivCOMShared/COrvWriteArchive.h>
#include <KivGenerics/DoubleSet.h>
#include <KivGenerics/IdSet.h>
#include <KivGenerics/IntegerSet.h>
#include <KivGenerics/ResultCode.h>
#include <KivGenerics/StringSet.h>

#include "persistence/ArchiveDecoder.h"
#include "persistence/Encoding.h"
#include "values/ElementFiller.h"

namespace KivGenerics {
namespace {

using KivCOMShared::COrvReadArchive;
using KivCOMShared::COrvSizeArchive;
using KivCOMShared::COrvWriteArchive;

// Calls `use(element)` in ascending order until it answers a failure, and answers the last answer.
template <class Use>
std::int32_t ForEachElement(const StringSet::Elements& elements, Use use) {
    std::int32_t result = 0;
    for (auto element = elements.begin(); result >= 0 && element != elements.end(); ++element) {
        result = use(*element);
    }
    return result;
}
template <class Key, class Order, class Use>
std::int32_t ForEachElement(const SortedChunks<Key, Order>& elements, Use use) {
    std::int32_t result = 0;
    elements.ForEach([&](const auto& entry) {
        result = use(*entry);
        return result >= 0;
    });
    return result;
}

template <class Elements, class WriteElement>
std::int32_t WriteSet(COrvWriteArchive* archive, std::uint16_t tag, const Elements& elements, WriteElement write) {
    std::int32_t result = archive->BeginObject(tag);
    if (result >= 0) {
        result = archive->WriteLong(static_cast<std::int32_t>(elements.size()));
    }
    if (result >= 0) {
        result = ForEachElement(elements, write);
    }
    return result < 0 ? result : archive->EndObject();
}

// Reads into a set of its own, which takes the place of the node's only when all of it has come: a failed read leaves the
// node's old elements. The count only counts; memory is taken as elements come.
template <class Elements, class MakeElement, class ReadElement>
std::int32_t ReadSet(COrvReadArchive* archive, std::uint16_t tag, Elements& elements, MakeElement make,
                     ReadElement read) {
    std::uint16_t found = 0;
    std::int32_t result = archive->ReadExpectedObjectTag(tag, &found);
    if (result != ResultSuccess) {
        return result < 0 ? result : ArchiveTypeMismatch;
    }
    std::int32_t count = 0;
    result = archive->ReadLong(&count);
    ElementFiller<Elements> filler(elements);
    for (std::int32_t i = 0; result >= 0 && i < count; ++i) {
        auto element = make();
        result = read(element);
        if (result >= 0) {
            filler.Add(std::move(element));
        }
    }
    if (result >= 0) {
        result = archive->EndReadObject();
    }
    if (result >= 0) {
        filler.Finish();
    }
    return result;
}

}  // namespace

std::int32_t IntegerSet::WriteToArchive(COrvWriteArchive* archive, bool) {
    return WriteSet(archive, kIntegerSetTag, elements_,
                    [archive](std::int32_t element) { return archive->WriteLong(element); });
}
std::int32_t IntegerSet::ReadFromArchive(ArchiveDecoder& decoder, bool) {
    COrvReadArchive* const archive = decoder.GetArchive();
    return ReadSet(
        archive, kIntegerSetTag, elements_, [] { return std::int32_t{0}; },
        [archive](std::int32_t& element) { return archive->ReadLong(&element); });
}
std::int32_t IntegerSet::SizeDefnArchive(COrvSizeArchive* sizer, bool) {
    sizer->AddSizes(0, 0, 0, Count() + 1, 1);
    return 0;
}

std::int32_t DoubleSet::WriteToArchive(COrvWriteArchive* archive, bool) {
    return WriteSet(archive, kDoubleSetTag, elements_,
                    [archive](double element) { return archive->WriteDouble(element); });
}
std::int32_t DoubleSet::ReadFromArchive(ArchiveDecoder& decoder, bool) {
    COrvReadArchive* const archive = decoder.GetArchive();
    return ReadSet(
        archive, kDoubleSetTag, elements_, [] { return 0.0; },
        [archive](double& element) { return archive->ReadDouble(&element); });
}
std::int32_t DoubleSet::SizeDefnArchive(COrvSizeArchive* sizer, bool) {
    sizer->AddSizes(0, Count(), 0, 1, 1);
    return 0;
}

std::int32_t IdSet::WriteToArchive(COrvWriteArchive* archive, bool) {
    return WriteSet(archive, kIdSetTag, elements_,
                    [archive](const GUID& element) { return archive->WriteGUID(element); });
}
std::int32_t IdSet::ReadFromArchive(ArchiveDecoder& decoder, bool) {
    COrvReadArchive* const archive = decoder.GetArchive();
    return ReadSet(
        archive, kIdSetTag, elements_, [] { return GUID{}; },
        [archive](GUID& element) { return archive->ReadGUID(&element); });
}
std::int32_t IdSet::SizeDefnArchive(COrvSizeArchive* sizer, bool) {
    sizer->AddSizes(0, 0, Count(), 1, 1);
    return 0;
}

std::int32_t StringSet::WriteToArchive(COrvWriteArchive* archive, bool) {
    return WriteSet(archive, kStringSetTag, elements_,
                    [archive](const KivBase::WString& element) { return archive->WriteString(element); });
}
std::int32_t StringSet::ReadFromArchive(ArchiveDecoder& decoder, bool) {
    COrvReadArchive* const archive = decoder.GetArchive();
    const auto makeText = [this] { return KivBase::WString(elements_.get_allocator()); };
    return ReadSet(archive, kStringSetTag, elements_, makeText,
                   [archive](KivBase::WString& element) { return archive->ReadWideString(element); });
}
std::int32_t StringSet::SizeDefnArchive(COrvSizeArchive* sizer, bool) {
    sizer->AddSizes(0, 0, 0, 1, 1);
    for (const KivBase::WString& element : elements_) {
        sizer->SizeString(element);
    }
    return 0;
}

}  // namespace KivGenerics
