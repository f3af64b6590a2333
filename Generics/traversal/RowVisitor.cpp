#include <KivGenerics/RowVisitor.h>

#include "core/LeafKinds.h"

namespace KivGenerics {

RowVisitor::RowVisitor(std::initializer_list<NodeType> kinds, SlotRows slotRows) noexcept : slotRows_(slotRows) {
    for (const NodeType kind : kinds) {
        const bool hasOperation = ForScalarKind(kind, [](auto) { return true; }, [] { return false; });
        kinds_ |= hasOperation ? 1U << kind : 0U;
    }
}

VisitCode RowVisitor::VisitBooleans(LeafRow<Boolean>) {
    return VisitContinue;
}
VisitCode RowVisitor::VisitDoubles(LeafRow<Double>) {
    return VisitContinue;
}
VisitCode RowVisitor::VisitGlobalIDs(LeafRow<GlobalID>) {
    return VisitContinue;
}
VisitCode RowVisitor::VisitIntegers(LeafRow<Integer>) {
    return VisitContinue;
}
VisitCode RowVisitor::VisitInteger64s(LeafRow<Integer64>) {
    return VisitContinue;
}
VisitCode RowVisitor::VisitStrings(LeafRow<String>) {
    return VisitContinue;
}
VisitCode RowVisitor::VisitSlots(LeafRow<Node>) {
    return VisitContinue;
}

}  // namespace KivGenerics
