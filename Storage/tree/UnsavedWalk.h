#pragma once

#include <cstddef>
#include <vector>

#include <KivGenerics/Composite.h>
#include <KivGenerics/Map.h>
#include <KivGenerics/Tree.h>
#include <KivStorage/UnsavedParts.h>

namespace KivStorage {

/// The walk behind FindUnsavedParts: depth first over what a save takes, on a stack of its own, so that no depth of the tree
/// can exhaust the program's.
class UnsavedWalk {
public:
    UnsavedWalk(KivGenerics::Tree* tree, bool withTransient);

    /// The tree's derived temporalities must be up to date.
    std::vector<UnsavedPart> Run();
    /// Only what lies too deep, whatever its temporality.
    std::vector<UnsavedPart> RunForDepth();

private:
    /// A composite whose children are being looked at.
    struct Level {
        KivGenerics::Composite* composite;
        int index;  // of the last child looked at
        bool saved;  // otherwise only composites that are empty by mistake are of interest
        KivGenerics::Node* first;  // a vector's first element
    };

    void Report(KivGenerics::Node* node, UnsavedReason reason);
    void Enter(KivGenerics::Composite* composite, bool saved);
    template <class Look>
    void WalkChildren(Look look);
    bool LookAtRoot();
    void LookAtChild(const Level& level, KivGenerics::Node* child);
    bool LookAtRootChild(KivGenerics::Node* child);
    bool LookAtElement(const Level& level, KivGenerics::Node* element);
    void LookAtUnsaved(KivGenerics::Node* node);
    void LookAtSaved(KivGenerics::Node* node, bool firstSpeaksForIt);
    void LookAtText(KivGenerics::Node* node);
    bool IsSaved(const KivGenerics::Node* node) const { return node->ShouldVisit(limit_); }

    KivGenerics::Tree* tree_;
    const KivGenerics::EnumOrvGenericsTemporality limit_;
    std::vector<Level> open_;
    std::vector<UnsavedPart> parts_;
};

}  // namespace KivStorage
