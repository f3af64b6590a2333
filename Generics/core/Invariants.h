#pragma once

#include <KivGenerics/Node.h>

namespace KivGenerics {

/// Tests the numbered invariants of `node` and of everything below it: 0 when all hold, else the number, as stated above the
/// private data of Vector and MapImpl, of the first that does not. Recurses: for tests and debugging.
int CheckInvariants(Node* node);

}  // namespace KivGenerics
