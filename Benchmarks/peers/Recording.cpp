#include "Recording.h"

#include <KivBase/Utf.h>
#include <KivGenerics/Boolean.h>
#include <KivGenerics/Children.h>
#include <KivGenerics/Double.h>
#include <KivGenerics/DoubleSet.h>
#include <KivGenerics/GlobalID.h>
#include <KivGenerics/IdSet.h>
#include <KivGenerics/Integer.h>
#include <KivGenerics/Integer64.h>
#include <KivGenerics/IntegerSet.h>
#include <KivGenerics/IterateFlags.h>
#include <KivGenerics/Map.h>
#include <KivGenerics/String.h>
#include <KivGenerics/StringSet.h>
#include <KivGenerics/Vector.h>
#include <KivGenerics/Visitor.h>
#include <KivStorage/LoadTree.h>

#include "Failure.h"

namespace Peers {

using namespace KivGenerics;

/// Appends to a recording what it visits.
class Recorder final : public Visitor {
public:
    explicit Recorder(Recording& recording) : recording_(recording) {}

    /// Returns how many there are.
    int RecordChildren(const Composite& composite) {
        int count = 0;
        for (Node* const child : Children(&composite)) {
            child->Iterate(this, SemanticTagNone, IterateSelf);
            ++count;
        }
        return count;
    }

    VisitCode VisitBoolean(Boolean* node) override { return Add(Kind::Boolean, *node, node->Get() ? 1 : 0); }
    VisitCode VisitInteger(Integer* node) override { return Add(Kind::Integer, *node, node->Get()); }
    VisitCode VisitInteger64(Integer64* node) override { return Add(Kind::Integer64, *node, node->Get()); }
    VisitCode VisitDouble(Double* node) override { return Keep(Kind::Double, *node, recording_.doubles_, node->Get()); }
    VisitCode VisitString(String* node) override {
        return Keep(Kind::Text, *node, recording_.texts_, MakeText(KivBase::WString(node->Get(), node->GetLength())));
    }
    VisitCode VisitGlobalID(GlobalID* node) override {
        return Keep(Kind::Guid, *node, recording_.guids_, MakeGuidValue(node->Get()));
    }
    VisitCode VisitIntegerSet(IntegerSet* node) override {
        return KeepSet(Kind::Integers, *node, recording_.integerSets_, CopyElements(*node),
                       [](std::int32_t value) { return value; });
    }
    VisitCode VisitDoubleSet(DoubleSet* node) override {
        return KeepSet(Kind::Doubles, *node, recording_.doubleSets_, CopyElements(*node),
                       [](double value) { return value; });
    }
    VisitCode VisitStringSet(StringSet* node) override {
        return KeepSet(Kind::Texts, *node, recording_.textSets_, node->Get(), MakeText);
    }
    VisitCode VisitIdSet(IdSet* node) override {
        return KeepSet(Kind::Guids, *node, recording_.guidSets_, CopyElements(*node), MakeGuidValue);
    }
    VisitCode VisitMap(Map* node, bool) override { return AddComposite(Kind::Map, *node, node->GetSemanticTag()); }
    VisitCode VisitVector(Vector* node, bool) override { return AddComposite(Kind::Vector, *node, SemanticTagNone); }

private:
    using Kind = Recording::Kind;

    static TextValue MakeText(const KivBase::WString& units) { return {units, KivBase::ToUtf8(units)}; }

    VisitCode Add(Kind kind, const Node& node, std::int64_t value) {
        recording_.items_.push_back({kind, node.GetIndex(), 0, 0, value});
        return VisitContinue;
    }
    VisitCode AddComposite(Kind kind, const KivGenerics::Composite& node, SemanticTag tag) {
        const std::size_t place = recording_.items_.size();
        recording_.items_.push_back({kind, node.GetIndex(), 0, tag, 0});
        recording_.items_[place].size = RecordChildren(node);
        return VisitContinue;
    }
    template <class T>
    VisitCode Keep(Kind kind, const Node& node, std::vector<T>& values, T value) {
        values.push_back(std::move(value));
        return Add(kind, node, static_cast<std::int64_t>(values.size()) - 1);
    }
    template <class SetNode>
    static typename SetNode::Elements CopyElements(const SetNode& node) {
        typename SetNode::Elements elements;
        node.Get(elements);
        return elements;
    }
    template <class T, class Elements, class Convert>
    VisitCode KeepSet(Kind kind, const Node& node, std::vector<std::vector<T>>& sets, const Elements& elements,
                      Convert convert) {
        std::vector<T> values;
        for (const auto& element : elements) {
            values.push_back(convert(element));
        }
        return Keep(kind, node, sets, std::move(values));
    }

    Recording& recording_;
};

Recording Recording::Load(const std::string& file) {
    const KivStorage::LoadResult loaded = KivStorage::LoadTree(file);
    if (!loaded.result.Ok()) {
        Fail(file + ": " + loaded.result.sentence);
    }
    Recording recording;
    recording.rootSize_ = Recorder(recording).RecordChildren(*static_cast<Composite*>(loaded.tree->GetRoot()));
    return recording;
}

}  // namespace Peers
