#pragma once

#include <string>
#include <utility>
#include <vector>

#include <KivGenerics/Tree.h>
#include <KivGenerics/Visitor.h>

#include "support/TestTree.h"
#include "values/Kinds.h"

namespace KivGenerics::Testing {

using KivTests::TextOf;

inline constexpr const char* kReadOnlyText = "Operation not allowed on a read-only tree!";

/// A tree whose root is a map with eight fixed slots, of own temporality TemporalityPersistent, so that the nodes of a
/// test stand somewhere.
class ValueTree {
public:
    ValueTree() : root_(static_cast<Map*>(tree_->NewRoot(NodeTypeMap))) {
        root_->SetTemporality(TemporalityPersistent);
    }

    Tree& operator*() const { return *tree_; }
    Tree* operator->() const { return tree_.Get(); }
    Map* Root() const { return root_; }

    /// A new node, of own temporality TemporalityPersistent as a map's children are.
    template <class T>
    T* Add(int index) const {
        return static_cast<T*>(root_->NewNode(index, T::StaticType));
    }

    /// How many changes `call` counts. What it throws is not caught.
    template <class Call>
    int ChangesOf(Call&& call) const {
        const int before = tree_->GetChangeCount();
        std::forward<Call>(call)();
        return tree_->GetChangeCount() - before;
    }

private:
    KivBase::ReturnPtrI<Tree> tree_ = KivTests::NewTree();
    Map* root_;
};

/// Notes the name of every operation that is called, and the node; answers what it was made with.
class NotingVisitor final : public Visitor {
public:
    explicit NotingVisitor(VisitCode answer = VisitContinue) : answer_(answer) {}

    std::vector<std::string> calls;
    std::vector<const Node*> nodes;

    VisitCode VisitBoolean(Boolean* node) override { return Note("VisitBoolean", node); }
    VisitCode VisitDouble(Double* node) override { return Note("VisitDouble", node); }
    VisitCode VisitGlobalID(GlobalID* node) override { return Note("VisitGlobalID", node); }
    VisitCode VisitInteger(Integer* node) override { return Note("VisitInteger", node); }
    VisitCode VisitInteger64(Integer64* node) override { return Note("VisitInteger64", node); }
    VisitCode VisitString(String* node) override { return Note("VisitString", node); }
    VisitCode VisitDoubleSet(DoubleSet* node) override { return Note("VisitDoubleSet", node); }
    VisitCode VisitIdSet(IdSet* node) override { return Note("VisitIdSet", node); }
    VisitCode VisitIntegerSet(IntegerSet* node) override { return Note("VisitIntegerSet", node); }
    VisitCode VisitStringSet(StringSet* node) override { return Note("VisitStringSet", node); }
    VisitCode VisitMap(Map* node, bool postOrder) override { return Note("VisitMap", node, postOrder); }
    VisitCode VisitVector(Vector* node, bool postOrder) override { return Note("VisitVector", node, postOrder); }

private:
    VisitCode Note(const char* name, const Node* node, bool postOrder = false) {
        calls.push_back(postOrder ? std::string(name) + " after" : name);
        nodes.push_back(node);
        return answer_;
    }

    VisitCode answer_;
};

}  // namespace KivGenerics::Testing
