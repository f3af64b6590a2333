#include "persistence/ArchiveDecoder.h"

namespace KivGenerics {

SemanticTag ArchiveDecoder::GetSemanticTag() {
    const std::uint32_t first = PeekByte();
    if (HasFailed()) {
        return SemanticTagNone;
    }
    const std::uint32_t tag = (first & 0x80) != 0 ? GetBytes(4) & 0x7FFFFFFF : GetBytes(2);
    return static_cast<SemanticTag>(tag);
}

}  // namespace KivGenerics
