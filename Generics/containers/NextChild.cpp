#include "core/NextChild.h"

#include <KivGenerics/Vector.h>

#include "core/MapChildren.h"

namespace KivGenerics {
namespace {

Node* TakeNext(Vector& vector, int& position) noexcept {
    return vector.GetNV(position++);
}

Node* TakeNext(Map& map, int& position) noexcept {
    const MapChildren children(map);
    while (position < children.slotCount) {
        if (Node* const child = children.slots[position++]) {
            return child;
        }
    }
    if (children.overflow == nullptr) {
        return nullptr;
    }
    const auto entry = children.overflow->After(position - 1);
    if (entry == children.overflow->end()) {
        return nullptr;
    }
    position = *entry + 1;
    return entry.Value();
}

}  // namespace

Node* TakeNextChild(Composite& composite, int& position) noexcept {
    return composite.GetType() == NodeTypeVector ? TakeNext(static_cast<Vector&>(composite), position)
                                                 : TakeNext(static_cast<Map&>(composite), position);
}

}  // namespace KivGenerics
