#include "traversal/LeavesOfVector.h"

#include "traversal/ChildPlaces.h"
#include "traversal/LeafRows.h"

namespace KivGenerics {

FoundComposite WalkLeavesOfVector(Visitor& visitor, const WalkLevel& level, Vector& vector, std::ptrdiff_t at,
                                  Node* leaf) {
    VectorPlaces places(vector, at);
    return LeafRows(visitor, level, places).WalkToComposite(leaf);
}

}  // namespace KivGenerics
