#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include <KivBase/ReturnPtrI.h>
#include <KivGenerics/Exception.h>
#include <KivGenerics/Map.h>
#include <KivGenerics/ResultCode.h>
#include <KivGenerics/Tree.h>
#include <KivGenerics/Vector.h>

#include "persistence/Calls.h"

namespace KivGenerics::Testing {

/// A tree with a root of one kind.
template <class Root>
class TreeOf {
public:
    explicit TreeOf(int tag = 0)
        : tree_(CreateGenericTree(EnumOrvObjectType{})),
          root_(static_cast<Root*>(tree_->NewRoot(Root::StaticType, false, SemanticTag(tag)))) {}

    Tree& operator*() const { return *tree_; }
    Tree* operator->() const { return tree_.Get(); }
    Root& GetRoot() const { return *root_; }

private:
    KivBase::ReturnPtrI<Tree> tree_;
    Root* root_;
};

using MapTree = TreeOf<Map>;
using VectorTree = TreeOf<Vector>;

/// A new child; in a map it has temporality 2, as NewNode leaves it, in a vector 1.
template <class T>
T* Put(Map& map, int index, int tag = 0) {
    return static_cast<T*>(map.NewNode(index, T::StaticType, false, SemanticTag(tag)));
}
template <class T>
T* Append(Vector& vector, int tag = 0) {
    return static_cast<T*>(vector.Add(T::StaticType, SemanticTag(tag)));
}
template <class T, class Value>
T* PutValue(Map& map, int index, const Value& value) {
    T* const leaf = Put<T>(map, index);
    leaf->Set(value);
    return leaf;
}
template <class T, class Value>
T* AppendValue(Vector& vector, const Value& value) {
    T* const leaf = Append<T>(vector);
    leaf->Set(value);
    return leaf;
}

/// The text of the Exception that the call throws; "nothing thrown" otherwise.
template <class Call>
KivBase::WString ThrownText(Call call) {
    try {
        call();
    } catch (const Exception& exception) {
        return exception.GetMessage();
    }
    return u"nothing thrown";
}

/// 00000007-0000-0000-0000000000000000 for 7.
GUID Id(std::uint32_t number);

/// What the node writes, which must succeed.
Calls WriteOf(Node& node, bool withTransient = false);
/// What saving the tree writes, which must succeed.
Calls SaveOf(Tree& tree, bool withTransient = false, int slotFlags = 255);
/// What sizing the node tells.
Calls SizeOf(Node& node, bool withTransient = false);

/// The result of loading the sequence.
std::int32_t Load(Tree& tree, const Calls& calls);
/// The sequence of a root around which stands the tree's envelope.
Calls InEnvelope(const Calls& root);

/// Every node in index order, a line each: key, kind, value, own temporality.
///
///     ": Map(tag 4100, 2 children) t1", "0: Integer 42 t2", "9: String "text" t3"
std::vector<std::string> Describe(Tree& tree);
/// The node and what is below it.
std::vector<std::string> Describe(Node& node);

}  // namespace KivGenerics::Testing
