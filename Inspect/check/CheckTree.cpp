#include <algorithm>

#include <KivGenerics/Map.h>
#include <KivGenerics/NodeCast.h>
#include <KivGenerics/ResultCode.h>
#include <KivGenerics/String.h>
#include <KivGenerics/StringSet.h>
#include <KivInspect/Check.h>
#include <KivInspect/Key.h>
#include <KivInspect/Walk.h>
#include <KivStorage/UnsavedParts.h>

namespace KivInspect {
namespace {

using namespace KivGenerics;
using KivStorage::UnsavedReason;

struct ReasonWords {
    UnsavedReason reason;
    const char* word;
    const char* advice;
};

constexpr ReasonWords kReasons[] = {
    {UnsavedReason::RootNotAMap, "RootNotAMap", "Put the root into a map."},
    {UnsavedReason::RootNotSaved, "RootNotSaved", "Make the root persistent."},
    {UnsavedReason::RootLeaf, "RootLeaf", "Put the value into a map or a vector below the root."},
    {UnsavedReason::RootChildOutsideSlots, "RootChildOutsideSlots",
     "Move it to a lower index, or one level down, or give the root a tag with more slots."},
    {UnsavedReason::RootSlotCountChanges, "RootSlotCountChanges", "Make the root with its tag from the beginning."},
    {UnsavedReason::EmptyComposite, "EmptyComposite", "Make it persistent if it is to be kept."},
    {UnsavedReason::MixedKinds, "MixedKinds", "Use one kind in a vector, or a map."},
    {UnsavedReason::MixedTemporality, "MixedTemporality", "Give all elements of the vector one temporality."},
    {UnsavedReason::TransientElement, "TransientElement", "Take it out of the vector, or make it persistent."},
    {UnsavedReason::TemporalityNotHeld, "TemporalityNotHeld",
     "Set a temporality from 0 to 3, of vectors and maps to 7."},
    {UnsavedReason::SemanticTagNotHeld, "SemanticTagNotHeld", "Choose a tag of 1 or more."},
    {UnsavedReason::Integer64Bit31, "Integer64Bit31", "Keep the number as a text, as a double, or in two integers."},
    {UnsavedReason::TextHasNul, "TextHasNul", "Take the NUL out of the text."},
    {UnsavedReason::TextTooLong, "TextTooLong", "Cut the text into several."},
    {UnsavedReason::NestingTooDeep, "NestingTooDeep", "Make the tree flatter."},
};
static_assert(std::size(kReasons) == static_cast<std::size_t>(UnsavedReason::NestingTooDeep) + 1);

Finding MakeFinding(const Tree* tree, const KivStorage::UnsavedPart& part, const Names* names) {
    const ReasonWords& words = kReasons[static_cast<std::size_t>(part.reason)];
    return {GetKey(tree->FindNodeByKey(part.key), names), words.word, part.sentence, words.advice};
}

bool IsWellFormed(const char16_t* units, std::size_t count) {
    for (std::size_t i = 0; i < count; ++i) {
        const bool isHigh = 0xD800 <= units[i] && units[i] <= 0xDBFF;
        const bool isLow = 0xDC00 <= units[i] && units[i] <= 0xDFFF;
        if (isLow || (isHigh && (i + 1 == count || units[i + 1] < 0xDC00 || 0xDFFF < units[i + 1]))) {
            return false;
        }
        i += isHigh ? 1 : 0;
    }
    return true;
}

/// Measures every node against the limits.
class LimitWalk {
public:
    LimitWalk(TreeCheck& check, const CheckOptions& options) : check_(check), options_(options) {
        check_.limits = {{"levels of vectors and maps", 0, static_cast<std::uint64_t>(MaxLoadNesting), {}},
                         {"units of a text", 0, MaxStringUnits, {}},
                         {"index in a map", 0, 0x1FFFFFFF, {}},
                         {"children of a node", 0, 0x7FFFFFFF, {}}};
    }

    void Run(Tree* tree) {
        Walk walk(tree->GetRoot());
        while (walk.Next() != nullptr) {
            Look(walk);
        }
        if (options_.strict) {
            ReportNearLimits();
        }
    }

private:
    enum Limit { Levels, Units, Index, Size };

    void Use(const Walk& walk, Limit limit, std::uint64_t used) {
        LimitUse& use = check_.limits[limit];
        if (used > use.used) {
            use.used = used;
            use.key = walk.GetKey(options_.names);
        }
    }

    void Look(const Walk& walk) {
        Node* const node = walk.GetNode();
        if (auto* const composite = node_cast<Composite>(node)) {
            Use(walk, Levels, static_cast<std::uint64_t>(walk.GetDepth()) + 1);
            Use(walk, Size, static_cast<std::uint64_t>(composite->GetSize(TemporalityTemporary)));
        }
        if (node_cast<Map>(node->GetParent()) != nullptr) {
            Use(walk, Index, static_cast<std::uint64_t>(std::max(0, node->GetIndex())));
        }
        if (const auto* const text = node_cast<String>(node)) {
            LookAtText(walk, text->Get(), text->GetLength());
        } else if (const auto* const texts = node_cast<StringSet>(node)) {
            for (const KivBase::WString& element : texts->Get()) {
                LookAtText(walk, element.data(), element.size());
            }
        }
        if (options_.strict && node->GetTemporality() == TemporalityTemporary) {
            Report(walk, "Temporary", "The node is temporary: no save keeps it.",
                   "Make it persistent if it is to be kept.");
        }
    }

    void LookAtText(const Walk& walk, const char16_t* units, std::size_t count) {
        Use(walk, Units, count);
        if (options_.strict && !IsWellFormed(units, count)) {
            Report(walk, "IllFormedText", "The text has a surrogate without its partner.",
                   "Correct the text: programs that use UTF-8 cannot hold it.");
        }
    }

    void Report(const Walk& walk, const char* reason, const char* why, const char* advice) {
        check_.findings.push_back({walk.GetKey(options_.names), reason, why, advice});
    }

    void ReportNearLimits() {
        for (const LimitUse& use : check_.limits) {
            if (use.used > use.limit / 10 * 9) {
                check_.findings.push_back({use.key, "NearLimit",
                                           "Of the limit of " + std::to_string(use.limit) + ", " + use.name + ", " +
                                               std::to_string(use.used) + " are used.",
                                           "See to it that it does not grow."});
            }
        }
    }

    TreeCheck& check_;
    const CheckOptions& options_;
};

}  // namespace

TreeCheck CheckTree(Tree* tree, const CheckOptions& options) {
    TreeCheck check;
    for (const KivStorage::UnsavedPart& part : KivStorage::FindUnsavedParts(tree, options.withTransient)) {
        check.findings.push_back(MakeFinding(tree, part, options.names));
    }
    LimitWalk(check, options).Run(tree);
    return check;
}

}  // namespace KivInspect
