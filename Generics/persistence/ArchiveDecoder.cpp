#include "persistence/ArchiveDecoder.h"

namespace KivGenerics {

SemanticTag ArchiveDecoder::GetSemanticTag() {
    if (!NeedBytes(1)) {
        return SemanticTagNone;
    }
    const bool isLong = (packed_.Peek() & 0x80) != 0;
    return static_cast<SemanticTag>(isLong ? GetBytes(4) & 0x7FFFFFFF : GetBytes(2));
}

}  // namespace KivGenerics
