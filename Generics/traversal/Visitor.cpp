#include <KivGenerics/Visitor.h>

#include <KivGenerics/Boolean.h>
#include <KivGenerics/Double.h>
#include <KivGenerics/DoubleSet.h>
#include <KivGenerics/GlobalID.h>
#include <KivGenerics/IdSet.h>
#include <KivGenerics/Integer.h>
#include <KivGenerics/Integer64.h>
#include <KivGenerics/IntegerSet.h>
#include <KivGenerics/Map.h>
#include <KivGenerics/String.h>
#include <KivGenerics/StringSet.h>
#include <KivGenerics/Vector.h>
#include <KivGenerics/VisitorNode.h>

namespace KivGenerics {

VisitCode Visitor::VisitBoolean(Boolean*) {
    return VisitContinue;
}
VisitCode Visitor::VisitDouble(Double*) {
    return VisitContinue;
}
VisitCode Visitor::VisitGlobalID(GlobalID*) {
    return VisitContinue;
}
VisitCode Visitor::VisitInteger(Integer*) {
    return VisitContinue;
}
VisitCode Visitor::VisitInteger64(Integer64*) {
    return VisitContinue;
}
VisitCode Visitor::VisitString(String*) {
    return VisitContinue;
}
VisitCode Visitor::VisitDoubleSet(DoubleSet*) {
    return VisitContinue;
}
VisitCode Visitor::VisitIdSet(IdSet*) {
    return VisitContinue;
}
VisitCode Visitor::VisitIntegerSet(IntegerSet*) {
    return VisitContinue;
}
VisitCode Visitor::VisitStringSet(StringSet*) {
    return VisitContinue;
}
VisitCode Visitor::VisitMap(Map*, bool) {
    return VisitContinue;
}
VisitCode Visitor::VisitVector(Vector*, bool) {
    return VisitContinue;
}

VisitCode VisitorNode::VisitBoolean(Boolean* node) {
    return VisitNode(node, false, NodeTypeBoolean);
}
VisitCode VisitorNode::VisitDouble(Double* node) {
    return VisitNode(node, false, NodeTypeDouble);
}
VisitCode VisitorNode::VisitGlobalID(GlobalID* node) {
    return VisitNode(node, false, NodeTypeGlobalID);
}
VisitCode VisitorNode::VisitInteger(Integer* node) {
    return VisitNode(node, false, NodeTypeInteger);
}
VisitCode VisitorNode::VisitInteger64(Integer64* node) {
    return VisitNode(node, false, NodeTypeInteger64);
}
VisitCode VisitorNode::VisitString(String* node) {
    return VisitNode(node, false, NodeTypeString);
}
VisitCode VisitorNode::VisitDoubleSet(DoubleSet* node) {
    return VisitNode(node, false, NodeTypeDoubleSet);
}
VisitCode VisitorNode::VisitIdSet(IdSet* node) {
    return VisitNode(node, false, NodeTypeIdSet);
}
VisitCode VisitorNode::VisitIntegerSet(IntegerSet* node) {
    return VisitNode(node, false, NodeTypeIntegerSet);
}
VisitCode VisitorNode::VisitStringSet(StringSet* node) {
    return VisitNode(node, false, NodeTypeStringSet);
}
VisitCode VisitorNode::VisitMap(Map* node, bool postOrder) {
    return VisitNode(node, postOrder, NodeTypeMap);
}
VisitCode VisitorNode::VisitVector(Vector* node, bool postOrder) {
    return VisitNode(node, postOrder, NodeTypeVector);
}

VisitCode VisitorNode::VisitNode(Node*, bool, NodeType) {
    return VisitContinue;
}

}  // namespace KivGenerics
