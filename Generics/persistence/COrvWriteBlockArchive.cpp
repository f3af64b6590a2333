#include "persistence/COrvWriteBlockArchive.h"

#include "persistence/Halves.h"

namespace KivGenerics {

COrvWriteBlockArchive::COrvWriteBlockArchive(KivCOMShared::BlockWriteStream* stream) : stream_(stream) {
    if (stream_ != nullptr) {
        stream_->AddRef();
    }
}

COrvWriteBlockArchive::~COrvWriteBlockArchive() {
    if (stream_ != nullptr) {
        stream_->Release();
    }
}

std::int32_t COrvWriteBlockArchive::WriteInt64(std::int64_t value) {
    if (stream_ == nullptr) {
        return ResultUnexpected;
    }
    const std::int32_t result = stream_->PutLong(GetLowHalf(value));
    return result < 0 ? result : stream_->PutLong(GetHighHalf(value));
}

}  // namespace KivGenerics
