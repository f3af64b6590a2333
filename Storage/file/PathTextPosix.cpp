#include "file/PathText.h"

#include <system_error>

namespace KivStorage {

std::string SystemText(const std::error_code& error) {
    return error.message();
}

}  // namespace KivStorage
