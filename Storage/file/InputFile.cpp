#include "file/InputFile.h"

#include <system_error>

#include "file/PathText.h"
#include "format/Failure.h"

namespace KivStorage {

std::string InputFile::GetPlace() const {
    return FilePlace(path_);
}

Result InputFile::Failure(std::int32_t code, int systemError) const {
    return Fail(code, FilePlace(path_, std::error_code(systemError, std::system_category())));
}

}  // namespace KivStorage
