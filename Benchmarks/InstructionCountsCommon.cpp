// The operations that are counted both of trees and of sets.

#include <KivGenerics/Boolean.h>
#include <KivGenerics/Double.h>
#include <KivGenerics/Integer.h>
#include <KivGenerics/Integer64.h>
#include <KivGenerics/IntegerSet.h>
#include <KivGenerics/IterateFlags.h>
#include <KivGenerics/String.h>
#include <KivGenerics/Visitor.h>
#include <KivStorage/MemoryReadStream.h>
#include <KivStorage/MemoryWriteStream.h>

#include "InstructionCounts.h"

using namespace KivGenerics;

namespace {

class Sum final : public Visitor {
public:
    VisitCode VisitBoolean(Boolean* node) override { return Add(node->Get() ? 1 : 0); }
    VisitCode VisitDouble(Double* node) override { return Add(static_cast<std::int64_t>(node->Get())); }
    VisitCode VisitInteger(Integer* node) override { return Add(node->Get()); }
    VisitCode VisitInteger64(Integer64* node) override { return Add(node->Get()); }
    VisitCode VisitString(String* node) override { return Add(static_cast<std::int64_t>(node->GetLength())); }
    VisitCode VisitIntegerSet(IntegerSet* node) override {
        std::int64_t elements = 0;
        for (const std::int32_t element : node->GetElements()) {
            elements += element;
        }
        return Add(elements);
    }

    std::int64_t sum = 0;

private:
    VisitCode Add(std::int64_t value) {
        sum += value;
        return VisitContinue;
    }
};

void Walk(Input& input) {
    Sum sum;
    input.tree->GetRoot()->Iterate(&sum, SemanticTagNone, IterateSelf | IterateChildren | IterateDeeper);
    Keep(sum.sum);
}

void Copy(Input& input) {
    Require(input.other->CopyFromTree(input.tree.Get()) != nullptr);
}

void Compare(Input& input) {
    Require(input.tree->GetRoot()->Compare(input.other->GetRoot(), TemporalityTemporary, true) == 0);
}

// Transient nodes go along: every level but the first of the nested shape is one.
void Save(Input& input) {
    const auto stream = KivStorage::MemoryWriteStream::Create();
    Require(input.tree->SaveToStream(stream.Get(), true) >= 0 && stream->Finish().Ok());
    input.bytes = stream->TakeBytes();
}

void Load(Input& input) {
    const auto stream = KivStorage::MemoryReadStream::Create(input.bytes.data(), input.bytes.size());
    input.other = NewTree();
    Require(input.other->LoadFromStream(stream.Get()) >= 0 && stream->Finish().Ok());
}

}  // namespace

void ListCommonCounts(std::vector<Count>& counts, const std::string& shape, const std::function<void(Input&)>& fill,
                      const std::function<std::size_t()>& getUnits) {
    const auto withTarget = [fill](Input& input) {
        fill(input);
        input.other = NewTree();
    };
    const auto withCopy = [withTarget](Input& input) {
        withTarget(input);
        Copy(input);
    };
    const auto saved = [fill](Input& input) {
        fill(input);
        Save(input);
    };
    counts.push_back({"walk", shape, getUnits, fill, Walk});
    counts.push_back({"copy", shape, getUnits, withTarget, Copy});
    counts.push_back({"compare", shape, getUnits, withCopy, Compare});
    counts.push_back({"save", shape, getUnits, fill, Save});
    counts.push_back({"load", shape, getUnits, saved, Load});
}
