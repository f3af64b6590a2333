#include <KivInspect/FileSource.h>

#include <fstream>
#include <system_error>

#include "files/Failure.h"

namespace KivInspect {
namespace {

namespace fs = std::filesystem;

class FileSource final : public Source {
public:
    FileSource(std::ifstream& stream, std::string place, std::uint64_t total, const Progress& progress)
        : stream_(stream), place_(std::move(place)), total_(total), progress_(progress) {}

    std::size_t Read(char* bytes, std::size_t size) override {
        stream_.read(bytes, static_cast<std::streamsize>(size));
        if (stream_.bad()) {
            throw Failure(KivStorage::StorageFileNotRead, place_ + " cannot be read. Check the disk it lies on.");
        }
        const auto count = static_cast<std::size_t>(stream_.gcount());
        done_ += count;
        if (progress_) {
            progress_(done_, total_);
        }
        return count;
    }

private:
    std::ifstream& stream_;
    std::string place_;
    std::uint64_t done_ = 0;
    std::uint64_t total_;
    const Progress& progress_;
};

}  // namespace

std::string PlaceOf(const fs::path& path) {
    return "file \"" + path.u8string() + "\"";
}

KivStorage::Result ReadFile(const fs::path& path, const ReadStep& read, const Progress& progress) {
    const std::string place = PlaceOf(path);
    std::error_code error;
    const fs::file_status status = fs::status(path, error);
    if (!fs::exists(status)) {
        return {KivStorage::StorageFileNotFound, place + ": There is no such file. Check its name."};
    }
    if (fs::is_directory(status)) {
        return {KivStorage::StorageNotAFile, place + ": This is a folder. Name a file."};
    }
    std::ifstream stream(path, std::ios::binary);
    if (!stream) {
        return {KivStorage::StorageFileNotOpened, place + ": The file cannot be opened. Check that you may read it."};
    }
    const std::uintmax_t size = fs::is_regular_file(status) ? fs::file_size(path, error) : 0;
    FileSource source(stream, place, error ? 0 : size, progress);
    return read(source, place);
}

}  // namespace KivInspect
