#include <KivGenerics/RowVisitor.h>

namespace KivGenerics {

RowVisitor::RowVisitor(std::initializer_list<NodeType> kinds) noexcept {
    constexpr std::uint32_t kWithRows = 1U << NodeTypeBoolean | 1U << NodeTypeDouble | 1U << NodeTypeGlobalID |
                                        1U << NodeTypeInteger | 1U << NodeTypeInteger64 | 1U << NodeTypeString;
    for (const NodeType kind : kinds) {
        kinds_ |= 1U << kind & kWithRows;
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

}  // namespace KivGenerics
