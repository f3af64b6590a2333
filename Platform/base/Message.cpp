#include <KivBase/Message.h>

namespace KivBase {

Message::~Message() = default;

}  // namespace KivBase
