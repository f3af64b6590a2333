#pragma once

#include <cstdint>

#include <KivBase/Guid.h>
#include <KivStorage/Interfaces.h>

namespace KivStorage {

/// A stream's answer to QueryInterface: itself with a new reference, 0x80004002 for an interface it has not.
template <class Stream>
std::int32_t AnswerInterface(Stream* stream, const GUID& asked, const GUID& own, void** object) {
    if (object == nullptr) {
        return static_cast<std::int32_t>(0x80004003);
    }
    if (KivBase::CompareGUID(asked, own) != 0 && KivBase::CompareGUID(asked, UnknownInterfaceId) != 0) {
        *object = nullptr;
        return static_cast<std::int32_t>(0x80004002);
    }
    stream->AddRef();
    *object = stream;
    return 0;
}

}  // namespace KivStorage
