#pragma once

#include <KivGenerics/NodeType.h>
#include <KivGenerics/Visitor.h>

namespace KivGenerics {

/// A visitor that is shown every kind of node in one operation.
class KIV_GENERICS_EXPORT VisitorNode : public Visitor {
public:
    VisitCode VisitBoolean(Boolean* node) override;
    VisitCode VisitDouble(Double* node) override;
    VisitCode VisitGlobalID(GlobalID* node) override;
    VisitCode VisitInteger(Integer* node) override;
    VisitCode VisitInteger64(Integer64* node) override;
    VisitCode VisitString(String* node) override;
    VisitCode VisitDoubleSet(DoubleSet* node) override;
    VisitCode VisitIdSet(IdSet* node) override;
    VisitCode VisitIntegerSet(IntegerSet* node) override;
    VisitCode VisitStringSet(StringSet* node) override;
    VisitCode VisitMap(Map* node, bool postOrder) override;
    VisitCode VisitVector(Vector* node, bool postOrder) override;

    /// `postOrder` is true for the visit after a composite's children; `type` is the node's kind.
    virtual VisitCode VisitNode(Node* node, bool postOrder, NodeType type);

protected:
    VisitorNode() noexcept = default;
    ~VisitorNode() = default;
};

}  // namespace KivGenerics
