#pragma once

#include <KivGenerics/Export.h>
#include <KivGenerics/Forward.h>
#include <KivGenerics/VisitCode.h>

namespace KivGenerics {

/// Is shown the nodes of a walk, one operation for each kind; every one answers VisitContinue until overridden.
///
/// The bool of the two composite operations is false before the composite's children and true after them. Visitors are
/// made and destroyed by whoever derives them, never through this base. What an operation throws ends the walk.
class KIV_GENERICS_EXPORT Visitor {
public:
    Visitor(const Visitor&) noexcept {}
    Visitor(Visitor&&) noexcept {}
    Visitor& operator=(const Visitor&) noexcept { return *this; }
    Visitor& operator=(Visitor&&) noexcept { return *this; }

    virtual VisitCode VisitBoolean(Boolean* node);
    virtual VisitCode VisitDouble(Double* node);
    virtual VisitCode VisitGlobalID(GlobalID* node);
    virtual VisitCode VisitInteger(Integer* node);
    virtual VisitCode VisitInteger64(Integer64* node);
    virtual VisitCode VisitString(String* node);
    virtual VisitCode VisitDoubleSet(DoubleSet* node);
    virtual VisitCode VisitIdSet(IdSet* node);
    virtual VisitCode VisitIntegerSet(IntegerSet* node);
    virtual VisitCode VisitStringSet(StringSet* node);
    virtual VisitCode VisitMap(Map* node, bool postOrder);
    virtual VisitCode VisitVector(Vector* node, bool postOrder);

protected:
    Visitor() noexcept = default;
    ~Visitor() = default;
};

}  // namespace KivGenerics
