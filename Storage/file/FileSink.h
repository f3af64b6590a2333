#pragma once

#include "file/AtomicFile.h"
#include "file/PathText.h"
#include "format/ByteSink.h"

namespace KivStorage {

/// Saved bytes on their way into a file.
class FileSink final : public ByteSink {
public:
    Result Write(const std::uint8_t* bytes, std::size_t count) override { return file.Write(bytes, count); }
    std::string GetPlace() const override { return FilePlace(file.GetPath()); }

    AtomicFile file;
};

}  // namespace KivStorage
