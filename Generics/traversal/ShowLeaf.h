#pragma once

#include <KivGenerics/Boolean.h>
#include <KivGenerics/Double.h>
#include <KivGenerics/DoubleSet.h>
#include <KivGenerics/GlobalID.h>
#include <KivGenerics/IdSet.h>
#include <KivGenerics/Integer.h>
#include <KivGenerics/Integer64.h>
#include <KivGenerics/IntegerSet.h>
#include <KivGenerics/String.h>
#include <KivGenerics/StringSet.h>
#include <KivGenerics/Visitor.h>

namespace KivGenerics {

// Shows a leaf to a visitor, by the operation for its kind.
inline VisitCode ShowLeaf(Visitor& visitor, Boolean& leaf) {
    return visitor.VisitBoolean(&leaf);
}
inline VisitCode ShowLeaf(Visitor& visitor, Double& leaf) {
    return visitor.VisitDouble(&leaf);
}
inline VisitCode ShowLeaf(Visitor& visitor, GlobalID& leaf) {
    return visitor.VisitGlobalID(&leaf);
}
inline VisitCode ShowLeaf(Visitor& visitor, Integer& leaf) {
    return visitor.VisitInteger(&leaf);
}
inline VisitCode ShowLeaf(Visitor& visitor, Integer64& leaf) {
    return visitor.VisitInteger64(&leaf);
}
inline VisitCode ShowLeaf(Visitor& visitor, String& leaf) {
    return visitor.VisitString(&leaf);
}
inline VisitCode ShowLeaf(Visitor& visitor, DoubleSet& leaf) {
    return visitor.VisitDoubleSet(&leaf);
}
inline VisitCode ShowLeaf(Visitor& visitor, IdSet& leaf) {
    return visitor.VisitIdSet(&leaf);
}
inline VisitCode ShowLeaf(Visitor& visitor, IntegerSet& leaf) {
    return visitor.VisitIntegerSet(&leaf);
}
inline VisitCode ShowLeaf(Visitor& visitor, StringSet& leaf) {
    return visitor.VisitStringSet(&leaf);
}

}  // namespace KivGenerics
