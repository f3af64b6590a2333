#include "view/PageData.h"

#include <KivGenerics/Map.h>
#include <KivGenerics/NodeCast.h>
#include <KivInspect/ValueText.h>
#include <KivInspect/Walk.h>

#include "json/JsonText.h"
#include "tree/NodeProgress.h"
#include "view/AlignedWalk.h"

namespace KivInspect {
namespace {

using namespace KivGenerics;

constexpr std::size_t ValueWidth = 300;  // characters of a value
constexpr int MaxTemporality = 7;        // three bits of it fit

enum State : std::uint8_t { Same, Changed, OnlyLeft, OnlyRight };

/// Whether two nodes themselves are alike, whatever is below them.
bool AreAlike(Node* left, Node* right) {
    if (left->GetType() != right->GetType() || left->GetTemporality() != right->GetTemporality()) {
        return false;
    }
    if (IsCompositeType(left->GetType())) {
        return left->GetSemanticTag() == right->GetSemanticTag();
    }
    std::string leftValue;
    std::string rightValue;
    AppendValue(leftValue, left);
    AppendValue(rightValue, right);
    return leftValue == rightValue;
}

State CompareSides(Node* left, Node* right) {
    if (left == nullptr) {
        return OnlyRight;
    }
    return right == nullptr ? OnlyLeft : AreAlike(left, right) ? Same : Changed;
}

void WriteSide(Node* node, Base64Writer& out) {
    const int temporality = node->GetTemporality();
    const int shown = temporality < 0 || temporality > MaxTemporality ? MaxTemporality : temporality;
    out.Put(static_cast<std::uint8_t>(node->GetType() | shown << 4));
    if (const auto* const map = node_cast<Map>(node)) {
        out.PutNumber(static_cast<std::uint32_t>(map->GetSemanticTagNV()));
    }
    if (auto* const composite = node_cast<Composite>(node)) {
        out.PutNumber(static_cast<std::uint32_t>(composite->GetSize(TemporalityTemporary)));
    } else {
        const std::string value = ShortText(node, ValueWidth);
        out.PutNumber(static_cast<std::uint32_t>(value.size()));
        out.Put(value);
    }
}

/// Collects the names of the tags and indexes that occur, each once.
class NameCollector {
public:
    explicit NameCollector(const Names& names) : names_(names) {}

    void Look(const Node* node) {
        if (const auto* const map = node_cast<Map>(node)) {
            if (const std::string* const name = names_.FindTag(map->GetSemanticTagNV())) {
                tags_[map->GetSemanticTagNV()] = *name;
            }
        }
        if (const auto* const parent = node_cast<Map>(node->GetParent())) {
            const SemanticTag tag = parent->GetSemanticTagNV();
            if (const std::string* const name = names_.FindIndex(tag, node->GetIndex())) {
                indexes_[tag][node->GetIndex()] = *name;
            }
        }
    }

    std::string ToJson() const {
        std::string text = "{\"tags\":";
        AppendObject(text, tags_);
        text += ",\"indexes\":{";
        const char* separator = "";
        for (const auto& [tag, indexes] : indexes_) {
            text += separator + ('"' + std::to_string(tag) + "\":");
            AppendObject(text, indexes);
            separator = ",";
        }
        return text + "}}";
    }

private:
    template <class Key>
    static void AppendObject(std::string& text, const std::map<Key, std::string>& members) {
        text += '{';
        const char* separator = "";
        for (const auto& [key, name] : members) {
            text += separator + ('"' + std::to_string(key) + "\":");
            AppendJsonString(text, name);
            separator = ",";
        }
        text += '}';
    }

    const Names& names_;
    std::map<std::int32_t, std::string> tags_;
    std::map<std::int32_t, std::map<int, std::string>> indexes_;
};

}  // namespace

std::string PageNames(const std::vector<Node*>& roots, const Names* names) {
    static const Names none;
    NameCollector collector(names != nullptr ? *names : none);
    if (names != nullptr && !names->IsEmpty()) {
        for (Node* const root : roots) {
            Walk walk(root);
            while (walk.Next() != nullptr) {
                collector.Look(walk.GetNode());
            }
        }
    }
    return collector.ToJson();
}

std::uint32_t CountAligned(Node* left, Node* right) {
    std::uint32_t count = 0;
    AlignedWalk walk(left, right);
    while (walk.Next()) {
        count += 1;
    }
    return count;
}

void WritePageData(Node* left, Node* right, bool compared, const Progress& progress, Base64Writer& out) {
    const std::uint32_t count = CountAligned(left, right);
    NodeProgress done(count, progress);
    out.PutNumber(compared ? 1 : 0);
    out.PutNumber(count);
    AlignedWalk walk(left, right);
    while (walk.Next()) {
        const Node* const either = walk.GetLeft() != nullptr ? walk.GetLeft() : walk.GetRight();
        out.PutNumber(static_cast<std::uint32_t>(either->GetIndex() + 1));
        const State state = compared ? CompareSides(walk.GetLeft(), walk.GetRight()) : Same;
        if (compared) {
            out.Put(state);
        }
        if (state != OnlyRight) {
            WriteSide(walk.GetLeft(), out);
        }
        if (state == Changed || state == OnlyRight) {
            WriteSide(walk.GetRight(), out);
        }
        out.PutNumber(walk.CountChildren());
        done.Step();
    }
}

}  // namespace KivInspect
