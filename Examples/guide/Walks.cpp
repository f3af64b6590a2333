#include "Walks.h"

#include <iostream>
#include <sstream>
#include <string>

#include <KivBase/Utf.h>
#include <KivGenerics/Double.h>
#include <KivGenerics/Integer.h>
#include <KivGenerics/IterateFlags.h>
#include <KivGenerics/Iterator.h>
#include <KivGenerics/NodeCast.h>
#include <KivGenerics/String.h>
#include <KivGenerics/ToText.h>
#include <KivGenerics/VisitorNode.h>
#include <KivGenerics/WalkNodes.h>

#include "Person.h"

using namespace KivGenerics;
using GuideChecks::Checks;

namespace Guide {
namespace {

// [visitor]
class LongestText final : public Visitor {
public:
    VisitCode VisitString(String* node) override {
        if (longest_ == nullptr || node->GetLength() > longest_->GetLength()) {
            longest_ = node;
        }
        return VisitContinue;
    }

    VisitCode VisitMap(Map* node, bool /*postOrder*/) override {
        return node->GetSemanticTagNV() == 4110 ? VisitSkipChildren : VisitContinue;
    }

    String* Get() const { return longest_; }

private:
    String* longest_ = nullptr;
};

String* FindLongestText(Tree* tree) {
    LongestText visitor;
    tree->GetRoot()->Iterate(&visitor, SemanticTagNone, IterateUpToPersistent);
    return visitor.Get();
}
// [/visitor]

// [removing]
class RemoveEmptyTexts final : public Visitor {
public:
    VisitCode VisitString(String* node) override { return node->GetLength() == 0 ? VisitRemove : VisitContinue; }
};
// [/removing]

// [inline-visitor]
struct SumOfNumbers {
    void operator()(const Double& leaf) { sum += leaf.Get(); }
    void operator()(const Integer& leaf) { sum += leaf.Get(); }
    WalkStep operator()(const Map& map) {
        return map.GetSemanticTagNV() == 4110 ? WalkStep::SkipChildren : WalkStep::Continue;
    }
    void operator()(const Node& /*other*/) {}

    double sum = 0;
};

double AddUp(Node* start) {
    return WalkNodes(start, SumOfNumbers()).sum;
}
// [/inline-visitor]

// [breadth-first]
std::string ListKinds(Node* start) {
    std::string kinds;
    const auto iterator = start->GetIterator();
    while (iterator->HasNext()) {
        kinds += std::string(ToText(iterator->Next()->GetType())) + " ";
    }
    return kinds;
}
// [/breadth-first]

// [debugging]
void Print(Node* node, std::ostream& out) {
    class Printer final : public VisitorNode {
    public:
        explicit Printer(std::ostream& out) : out_(out) {}

        VisitCode VisitNode(Node* node, bool /*postOrder*/, NodeType /*type*/) override {
            KivBase::WString key;
            node->GetKey(key);
            out_ << KivBase::ToUtf8(key) << " " << ToText(node) << " " << ToText(node->GetDerivedTemporality()) << "\n";
            return VisitContinue;
        }

    private:
        std::ostream& out_;
    };
    Printer printer(out);
    node->Iterate(&printer, SemanticTagNone, IterateSelf | IterateChildren | IterateDeeper);
}
// [/debugging]

}  // namespace

void CheckWalking(Checks& checks) {
    const auto tree = MakePerson();
    checks.ExpectEqual(ToText(FindLongestText(tree.Get())), std::string("\"Bernoulli numbers\""), "the longest text");
    GetPerson(tree.Get())->SetSemanticTag(SemanticTag(4110));
    checks.Expect(FindLongestText(tree.Get()) == nullptr, "skipped children");
    checks.ExpectEqual(ListKinds(tree->GetRoot()), std::string("Map Map String Integer Vector String String "),
                       "breadth first");
    node_cast<String>(tree->FindNodeByKey(u"0:2:0:"))->Set(u"");
    RemoveEmptyTexts visitor;
    tree->GetRoot()->Iterate(&visitor, SemanticTagNone, 0);
    checks.ExpectEqual(ToText(tree->FindNodeByKey(u"0:2:0:")), std::string("\"Bernoulli numbers\""), "removing");
    checks.Expect(tree->FindNodeByKey(u"0:2:1:") == nullptr, "one note is left");
    Map* const measurement = AddMeasurement(GetPerson(tree.Get()), 9, {0.5, 0.25, 8});
    checks.ExpectEqual(ToText(measurement), std::string("Map(tag 1, 4 children)"), "leaves made at once");
    checks.Expect(AddUp(measurement) == 2026 + 11 + 3 + 8.75, "a visitor known when compiling");
    CorrectSamples(measurement, {{1, 4.5}});
    checks.Expect(AddUp(tree->GetRoot()) == 0, "skipped children");
    checks.Expect(AddUp(measurement) == 2026 + 11 + 3 + 13, "a leaf set through its vector");
}

void CheckPrinting(Checks& checks) {
    const auto tree = MakePerson();
    tree->GetRoot()->Compare(tree->GetRoot(), TemporalityPersistent, true);
    std::ostringstream out;
    Print(tree->GetRoot(), out);
    checks.ExpectEqual(out.str(),
                       std::string(" Map(tag 1, 1 child) persistent\n"
                                   "0: Map(tag 1, 3 children) persistent\n"
                                   "0:0: \"Ada Lovelace\" persistent\n"
                                   "0:1: 1815 persistent\n"
                                   "0:2: Vector(2 children) persistent\n"
                                   "0:2:0: \"first program\" persistent\n"
                                   "0:2:1: \"Bernoulli numbers\" persistent\n"),
                       "printing a tree");
}

}  // namespace Guide
