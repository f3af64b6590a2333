#include "faults/OperationTrials.h"

#include <array>
#include <cstdint>
#include <numeric>
#include <string>
#include <vector>

#include <KivCOMShared/COrvWriteArchive.h>
#include <KivGenerics/Boolean.h>
#include <KivGenerics/Iterator.h>
#include <KivGenerics/LeafSetter.h>
#include <KivGenerics/ToText.h>
#include <KivGenerics/VisitorNode.h>
#include <KivGenerics/WalkNodes.h>
#include <KivStorage/MemoryReadStream.h>
#include <KivStorage/MemoryWriteStream.h>
#include <KivStorage/SizeTotals.h>

#include "faults/Documents.h"

using namespace KivGenerics;

namespace Faults {
namespace {

/// Takes everything and keeps nothing.
class NullArchive final : public KivCOMShared::COrvWriteArchive {
public:
    std::int32_t WriteShort(std::uint16_t) override { return 0; }
    std::int32_t WriteDouble(double) override { return 0; }
    std::int32_t WriteGUID(const GUID&) override { return 0; }
    std::int32_t WriteLong(std::int32_t) override { return 0; }
    std::int32_t WriteInt64(std::int64_t) override { return 0; }
    std::int32_t WriteWideString(const char16_t*, std::uint32_t) override { return 0; }
    std::int32_t WriteVariant(const VARIANT*) override { return 0; }
    std::int32_t BeginObject(std::uint16_t) override { return 0; }
    std::int32_t EndObject() override { return 0; }
};

class Nobody final : public VisitorNode {};

/// An operation on the node with this key, and on the one with the same key in the other tree.
template <class T, class Operation>
Trial On(const char* name, const char16_t* key, Operation operation, Promise promise = Promise::TreeAsItWas) {
    return {name, promise, [key, operation](Tree& tree, Tree& other) {
                operation(*static_cast<T*>(tree.FindNodeByKey(key)), *static_cast<T*>(other.FindNodeByKey(key)));
            }};
}

template <class Operation>
Trial OnTree(const char* name, Operation operation, Promise promise = Promise::TreeAsItWas) {
    return {name, promise, operation};
}

template <class T>
auto Ask(T operation) {
    return [operation](auto& node, auto&) { static_cast<void>((node.*operation)()); };
}

struct NodeOperation {
    const char* name;
    void (*run)(Node& node, Node& other);
};

// What every node has.
const NodeOperation kNodeOperations[] = {
    {"GetKey",
     [](Node& node, Node&) {
         KivBase::WString key;
         node.GetKey(key);
     }},
    {"GetSemanticTagKey",
     [](Node& node, Node&) {
         KivBase::WString key;
         node.GetSemanticTagKey(key);
     }},
    {"GetHumanReadableKey",
     [](Node& node, Node&) {
         KivBase::WString key;
         node.GetHumanReadableKey(9, key);
     }},
    {"GetParent", [](Node& node, Node&) { node.GetParent(); }},
    {"IsRoot", [](Node& node, Node&) { node.IsRoot(); }},
    {"GetTree", [](Node& node, Node&) { node.GetTree(); }},
    {"GetSemanticTag", [](Node& node, Node&) { node.GetSemanticTag(); }},
    {"GetDerivedTemporality", [](Node& node, Node&) { node.GetDerivedTemporality(); }},
    {"CalculateDerivedTemporality", [](Node& node, Node&) { node.CalculateDerivedTemporality(); }},
    {"Compare", [](Node& node, Node& other) { node.Compare(&other, TemporalityTemporary, true); }},
    {"Clear", [](Node& node, Node&) { node.Clear(); }},
    {"Remove", [](Node& node, Node&) { node.Remove(); }},
    {"Detach", [](Node& node, Node&) { node.Detach(); }},
    {"Populate", [](Node& node, Node& other) { node.Populate(&other); }},
    {"MergeWith", [](Node& node, Node& other) { node.MergeWith(&other, false); }},
    {"WriteToArchive",
     [](Node& node, Node&) {
         NullArchive archive;
         node.WriteToArchive(&archive, true);
     }},
    {"SizeDefnArchive",
     [](Node& node, Node&) {
         KivStorage::SizeTotals sizer;
         node.SizeDefnArchive(&sizer, true);
     }},
    {"Visit",
     [](Node& node, Node&) {
         Nobody visitor;
         node.Visit(&visitor, false);
     }},
    {"GetIterator", [](Node& node, Node&) { node.GetIterator(); }},
    {"Iterate",
     [](Node& node, Node&) {
         Nobody visitor;
         node.Iterate(&visitor, SemanticTagNone, 0);
     }},
    {"WalkNodes", [](Node& node, Node&) { WalkNodes(&node, [](const Node&) {}); }},
    {"SetTemporality", [](Node& node, Node&) { node.SetTemporality(TemporalityTransient); }},
    {"GetType", [](Node& node, Node&) { node.GetType(); }},
    {"GetIndex", [](Node& node, Node&) { node.GetIndex(); }},
    {"GetTemporality", [](Node& node, Node&) { node.GetTemporality(); }},
    {"ShouldVisit", [](Node& node, Node&) { node.ShouldVisit(TemporalityPersistent); }},
};

// One of every kind, and the root.
constexpr const char16_t* kKeys[] = {u"",     u"0:",   u"2:",   u"3:",   u"0:0:", u"0:1:", u"0:2:",
                                     u"0:3:", u"0:4:", u"0:5:", u"1:0:", u"1:1:", u"1:2:", u"1:3:"};

std::vector<Trial> TrialsOfNodes() {
    std::vector<Trial> trials;
    const auto document = NewDocument();
    for (const char16_t* const key : kKeys) {
        Node* const node = document->FindNodeByKey(key);
        const Promise promise = IsCompositeType(node->GetType()) ? Promise::TreeUsable : Promise::TreeAsItWas;
        for (const NodeOperation& each : kNodeOperations) {
            const std::string name = std::string(ToText(node->GetType())) + "::" + each.name;
            trials.push_back(On<Node>(name.c_str(), key, each.run, promise));
        }
    }
    return trials;
}

template <class T>
void AddScalar(std::vector<Trial>& trials, const char* get, const char* set, const char16_t* key) {
    trials.push_back(On<T>(get, key, [](T& node, T&) { node.Get(); }));
    trials.push_back(On<T>(set, key, [](T& node, T& other) { node.Set(other.Get()); }));
}

std::vector<Trial> TrialsOfScalars() {
    std::vector<Trial> trials;
    AddScalar<Integer>(trials, "Integer::Get", "Integer::Set", u"0:0:");
    AddScalar<Integer64>(trials, "Integer64::Get", "Integer64::Set", u"0:1:");
    AddScalar<Double>(trials, "Double::Get", "Double::Set", u"0:2:");
    AddScalar<Boolean>(trials, "Boolean::Get", "Boolean::Set", u"0:3:");
    AddScalar<String>(trials, "String::Get", "String::Set", u"0:4:");
    AddScalar<GlobalID>(trials, "GlobalID::Get", "GlobalID::Set", u"0:5:");
    trials.push_back(
        On<String>("String::Set", u"0:4:", [](String& node, String&) { node.Set(KivBase::WString(200, u'x')); }));
    trials.push_back(On<String>("String::GetLength", u"0:4:", [](String& node, String&) { node.GetLength(); }));
    trials.push_back(On<GlobalID>("GlobalID::IsNull", u"0:5:", [](GlobalID& node, GlobalID&) { node.IsNull(); }));
    return trials;
}

template <class T>
void AddSet(std::vector<Trial>& trials, const char16_t* key, const typename T::Elements::value_type& element) {
    const std::string kind = ToText(T::StaticType);
    const auto add = [&](const char* name, auto operation) {
        trials.push_back(On<T>((kind + "::" + name).c_str(), key, operation));
    };
    add("Count", [](T& node, T&) { node.Count(); });
    add("Add", [element](T& node, T&) { node.Add(element); });
    add("Remove", [element](T& node, T&) { node.Remove(element); });
    add("Exists", [element](T& node, T&) { node.Exists(element); });
    add("Item", [](T& node, T&) {
        typename T::Elements::value_type room{};
        node.Item(0, room);
    });
    add("Set", [element](T& node, T&) {
        typename T::Elements elements;
        elements.insert(element);
        elements.insert(typename T::Elements::value_type{});
        node.Set(elements);
    });
}

template <class T>
void AddGet(std::vector<Trial>& trials, const char* name, const char16_t* key) {
    trials.push_back(On<T>(name, key, [](T& node, T&) {
        typename T::Elements elements;
        node.Get(elements);
    }));
}

std::vector<Trial> TrialsOfSets() {
    std::vector<Trial> trials;
    AddSet<IntegerSet>(trials, u"1:0:", 7);
    AddSet<DoubleSet>(trials, u"1:1:", 7.5);
    AddSet<StringSet>(trials, u"1:2:", KivBase::WString(60, u'y'));
    AddSet<IdSet>(trials, u"1:3:", GUID{1, 1, 1, {}});
    AddGet<IntegerSet>(trials, "IntegerSet::Get", u"1:0:");
    AddGet<DoubleSet>(trials, "DoubleSet::Get", u"1:1:");
    AddGet<IdSet>(trials, "IdSet::Get", u"1:3:");
    trials.push_back(On<StringSet>("StringSet::Get", u"1:2:", [](StringSet& node, StringSet&) { node.Get(); }));
    trials.push_back(On<IntegerSet>("IntegerSet::GetElements", u"1:0:", Ask(&IntegerSet::GetElements)));
    trials.push_back(On<DoubleSet>("DoubleSet::GetElements", u"1:1:", Ask(&DoubleSet::GetElements)));
    trials.push_back(On<IdSet>("IdSet::GetElements", u"1:3:", Ask(&IdSet::GetElements)));
    return trials;
}

// So many that their tree needs more than one block for them.
constexpr std::array<std::int32_t, 500> kManyNumbers{};

// Of a map and of a vector alike, with the indexes that are good for either.
template <class T>
void AddComposite(std::vector<Trial>& trials, const char16_t* key) {
    const std::string kind = ToText(T::StaticType);
    const auto add = [&](const char* name, auto operation, Promise promise = Promise::TreeAsItWas) {
        trials.push_back(On<T>((kind + "::" + name).c_str(), key, operation, promise));
    };
    add("GetSize", [](T& node, T&) { node.GetSize(TemporalityPersistent); });
    add("IsEmpty", [](T& node, T&) { node.IsEmpty(); });
    add("Get", [](T& node, T&) { node.Get(1); });
    add("GetNV", [](T& node, T&) { node.GetNV(1); });
    add("GetNext", [](T& node, T&) { node.GetNext(1); });
    add("GetNth", [](T& node, T&) { node.GetNth(1); });
    add("NewNode", [](T& node, T&) { node.NewNode(1, NodeTypeMap, false, SemanticTag(4107)); });
    add("NewNode", [](T& node, T&) { node.NewNode(1, NodeTypeVector, true); });
    add("ReplaceWithCopy", [](T& node, T& other) { node.ReplaceWithCopy(1, other.Get(0)); }, Promise::TreeUsable);
    add("Remove", [](T& node, T&) { node.Remove(1); });
    add("Detach", [](T& node, T&) { node.Detach(1); });
    add(
        "Move",
        [](T& node, T&) {
            Node* const child = node.Detach(1);
            node.Move(1, child);
        },
        Promise::TreeUsable);
}

std::vector<Trial> TrialsOfComposites() {
    std::vector<Trial> trials;
    AddComposite<Vector>(trials, u"2:");
    AddComposite<Map>(trials, u"0:");
    const auto add = [&](const char* name, void (*operation)(Vector&, Vector&),
                         Promise promise = Promise::TreeAsItWas) {
        trials.push_back(On<Vector>(name, u"3:", operation, promise));
    };
    add("Vector::Add", [](Vector& node, Vector&) { node.Add(NodeTypeVector); });
    add("Vector::Insert", [](Vector& node, Vector&) { node.Insert(1, NodeTypeString); });
    add("Vector::AddCopy", [](Vector& node, Vector& other) { node.AddCopy(other.Get(1)); }, Promise::TreeUsable);
    add(
        "Vector::InsertCopy", [](Vector& node, Vector& other) { node.InsertCopy(1, other.Get(1)); },
        Promise::TreeUsable);
    add("Vector::InsertNode", [](Vector& node, Vector&) { node.InsertNode(0, node.Detach(1)); }, Promise::TreeUsable);
    add("Vector::Reserve", [](Vector& node, Vector&) { node.Reserve(1000); });
    trials.push_back(On<Vector>(
        "Vector::AddLeaves", u"2:",
        [](Vector& node, Vector&) { node.AddLeaves(kManyNumbers.data(), static_cast<int>(kManyNumbers.size())); },
        Promise::TreeUsable));
    const auto addToMap = [&](const char* name, void (*operation)(Map&, Map&), Promise promise = Promise::TreeAsItWas) {
        trials.push_back(On<Map>(name, u"0:", operation, promise));
    };
    addToMap(
        "Map::NewLeaves",
        [](Map& node, Map&) {
            std::vector<int> indexes(kManyNumbers.size());
            std::iota(indexes.begin(), indexes.end(), 4);
            node.NewLeaves(indexes.data(), kManyNumbers.data(), static_cast<int>(indexes.size()));
        },
        Promise::TreeUsable);
    addToMap("Map::NewNode", [](Map& node, Map&) { node.NewNode(99, NodeTypeString); });
    addToMap("LeafSetter::Set", [](Map& node, Map&) { LeafSetter(node).Set<Integer>(node, 0, 77); });
    addToMap("Map::SetSemanticTag", [](Map& node, Map&) { node.SetSemanticTag(SemanticTag(4)); });
    addToMap("Map::GetSemanticTag", [](Map& node, Map&) { node.GetSemanticTag(); });
    addToMap("Map::GetSemanticTagNV", [](Map& node, Map&) { node.GetSemanticTagNV(); });
    addToMap("Map::GetHash", [](Map& node, Map&) { node.GetHash(true); });
    addToMap("Map::GetSlotCount", [](Map& node, Map&) { node.GetSlotCount(); });
    addToMap("Map::HasOverflow", [](Map& node, Map&) { node.HasOverflow(); });
    return trials;
}

std::int32_t Save(Tree& tree, KivStorage::MemoryWriteStream& stream) {
    return tree.SaveToStream(&stream, true);
}

void LoadSaved(Tree& tree, Tree& other) {
    const auto stream = KivStorage::MemoryWriteStream::Create();
    if (!stream || Save(other, *stream) != 0 || !stream->Finish().Ok()) {
        return;
    }
    const auto saved = KivStorage::MemoryReadStream::Create(stream->GetBytes().data(), stream->GetBytes().size());
    if (saved) {
        tree.LoadFromStream(saved.Get());
    }
}

std::vector<Trial> TrialsOfTrees() {
    const auto usable = Promise::TreeUsable;
    return {
        OnTree("Tree::AddRef",
               [](Tree& tree, Tree&) {
                   tree.AddRef();
                   tree.Release();
               }),
        OnTree("Tree::Release",
               [](Tree& tree, Tree&) {
                   tree.AddRef();
                   tree.Release();
               }),
        OnTree("Tree::GetRoot", [](Tree& tree, Tree&) { tree.GetRoot(); }),
        OnTree("Tree::IsEmpty", [](Tree& tree, Tree&) { tree.IsEmpty(); }),
        OnTree("Tree::IsReadOnly", [](Tree& tree, Tree&) { tree.IsReadOnly(); }),
        OnTree("Tree::GetChangeCount", [](Tree& tree, Tree&) { tree.GetChangeCount(); }),
        OnTree("Tree::RemoveRoot", [](Tree& tree, Tree&) { tree.RemoveRoot(); }),
        OnTree(
            "Tree::ClearTemporaryNodes", [](Tree& tree, Tree&) { tree.ClearTemporaryNodes(); }, usable),
        OnTree("Tree::SetRoot", [](Tree& tree, Tree&) { tree.SetRoot(tree.FindNodeByKey(u"0:")); }),
        OnTree("Tree::NewRoot", [](Tree& tree, Tree&) { tree.NewRoot(NodeTypeMap, true); }),
        OnTree(
            "Tree::CopyFromTree", [](Tree& tree, Tree& other) { tree.CopyFromTree(&other); }, usable),
        OnTree(
            "Tree::CopyFromNode", [](Tree& tree, Tree& other) { tree.CopyFromNode(other.GetRoot()); }, usable),
        OnTree("Tree::SetReadOnly", [](Tree& tree, Tree&) { tree.SetReadOnly(); }),
        OnTree("Tree::ResetChangeCount", [](Tree& tree, Tree&) { tree.ResetChangeCount(); }),
        OnTree("Tree::FindNodeByKey", [](Tree& tree, Tree&) { tree.FindNodeByKey(u"0:1:"); }),
        OnTree(
            "Tree::SaveToStream",
            [](Tree& tree, Tree&) {
                if (const auto stream = KivStorage::MemoryWriteStream::Create()) {
                    Save(tree, *stream);
                }
            },
            usable),
        OnTree("Tree::LoadFromStream", LoadSaved, usable),
        OnTree(
            "Tree::SaveToArchive",
            [](Tree& tree, Tree&) {
                NullArchive archive;
                tree.SaveToArchive(&archive, true, 255);
            },
            usable),
        OnTree("Tree::LoadFromArchive", LoadSaved, usable),  // through the library's own archive
        OnTree("Tree::SizeArchive",
               [](Tree& tree, Tree&) {
                   KivStorage::SizeTotals sizer;
                   tree.SizeArchive(&sizer, true);
               }),
        OnTree("Tree::UpdateDerivedTemporality", [](Tree& tree, Tree&) { tree.UpdateDerivedTemporality(); }),
        OnTree("Tree::BufferQueryA", [](Tree& tree, Tree&) { tree.BufferQueryA(); }),
        OnTree("Tree::BufferQueryB", [](Tree& tree, Tree&) { tree.BufferQueryB(); }),
        OnTree("Tree::CreateTreeInForest", [](Tree& tree, Tree&) { tree.CreateTreeInForest(); }),
        OnTree("Iterator::HasNext",
               [](Tree& tree, Tree&) {
                   const auto iterator = tree.GetRoot()->GetIterator();
                   static_cast<void>(iterator && iterator->HasNext());
               }),
        OnTree("Iterator::Next",
               [](Tree& tree, Tree&) {
                   const auto iterator = tree.GetRoot()->GetIterator();
                   while (iterator && iterator->Next() != nullptr) {
                   }
               }),
        OnTree("Iterator::RemoveCurrent",
               [](Tree& tree, Tree&) {
                   const auto iterator = tree.GetRoot()->GetIterator();
                   if (iterator && iterator->Next() != nullptr && iterator->Next() != nullptr) {
                       iterator->RemoveCurrent();
                   }
               }),
    };
}

}  // namespace

std::vector<Trial> AllTrials() {
    std::vector<Trial> all;
    for (const auto& trials :
         {TrialsOfNodes(), TrialsOfScalars(), TrialsOfSets(), TrialsOfComposites(), TrialsOfTrees()}) {
        all.insert(all.end(), trials.begin(), trials.end());
    }
    return all;
}

}  // namespace Faults
