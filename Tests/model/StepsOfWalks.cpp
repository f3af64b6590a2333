#include <KivGenerics/Iterator.h>
#include <KivGenerics/VisitorNode.h>
#include <KivGenerics/WalkNodes.h>

#include "model/Steps.h"

using namespace KivGenerics;

namespace Model {
namespace {

// What a visitor answers depends on how many nodes it has been shown, so that both walks get the same answers.
class Answers {
public:
    explicit Answers(std::uint32_t seed) : seed_(seed) {}
    VisitCode Next() {
        seed_ = seed_ * 1664525 + 1013904223;
        const std::uint32_t choice = seed_ >> 24;
        return choice < 200 ? VisitContinue
                            : (choice < 225 ? VisitSkipChildren : (choice < 250 ? VisitRemove : Rare(choice)));
    }

private:
    static VisitCode Rare(std::uint32_t choice) { return choice < 253 ? VisitStop : VisitCode(5); }

    std::uint32_t seed_;
};

struct Shown {
    const Node* node;
    bool postOrder;
    bool operator==(const Shown& other) const { return node == other.node && postOrder == other.postOrder; }
};

class Recorder final : public VisitorNode {
public:
    explicit Recorder(const Answers& answers) : answers_(answers) {}
    VisitCode VisitNode(Node* node, bool postOrder, NodeType) override {
        shown_.push_back({node, postOrder});
        return answers_.Next();
    }
    const std::vector<Shown>& GetShown() const { return shown_; }

private:
    Answers answers_;
    std::vector<Shown> shown_;
};

unsigned AnyFlags(Choices& choices) {
    constexpr unsigned kTypes[] = {0, 0, 0xFFFF, 0x40, 0x20, 0x60, 0xF9F, 0x1005};
    constexpr unsigned kTemporalities[] = {0,          0,          0x01000000, 0x02000000, 0x04000000,
                                           0x10000000, 0x20000000, 0x40000000, 0x80000000, 0x31000000};
    return kTypes[choices.Below(8)] | choices.Below(4) << 16 | choices.Below(8) << 20 |
           kTemporalities[choices.Below(10)];
}

void RunIterate(World& world, Choices& choices) {
    Item* const start = choices.AnyItem();
    if (start == nullptr) {
        return;
    }
    const unsigned flags = AnyFlags(choices);
    const SemanticTag tag = choices.Below(3) == 2 ? choices.AnyTag() : SemanticTagNone;
    Answers answers(choices.Below(0x10000));
    Recorder recorder(answers);
    std::vector<Shown> shown;
    const auto see = [&](Item& item, bool postOrder) {
        shown.push_back({item.twin, postOrder});
        return answers.Next();
    };
    world.Both([&] { start->twin->Iterate(&recorder, tag, static_cast<int>(flags)); },
               [&] { Iterate(*start, see, tag, flags); });
    Expect(recorder.GetShown() == shown, "what a walk shows");
}

WalkStep ToStep(VisitCode code) {
    return code == VisitStop ? WalkStep::Stop
                             : (code == VisitSkipChildren ? WalkStep::SkipChildren : WalkStep::Continue);
}

/// Shows an item and all below it, whatever their temporalities. False when the walk has been stopped.
template <class See>
bool ShowAll(Item& item, See& see) {
    const WalkStep step = see(item);
    if (step == WalkStep::Continue) {
        for (Item* child = FindAfter(item, -1); child != nullptr; child = FindAfter(item, child->index)) {
            if (!ShowAll(*child, see)) {
                return false;
            }
        }
    }
    return step != WalkStep::Stop;
}

void RunWalkNodes(World& world, Choices& choices) {
    Item* const start = choices.AnyItem();
    if (start == nullptr) {
        return;
    }
    const Answers answers(choices.Below(0x10000));
    std::vector<const Node*> shown;
    std::vector<const Node*> expected;
    world.Both(
        [&] {
            WalkNodes(start->twin, [&, own = answers](const Node& node) mutable {
                shown.push_back(&node);
                return ToStep(own.Next());
            });
        },
        [&] {
            auto see = [&, own = answers](Item& item) mutable {
                expected.push_back(item.twin);
                return ToStep(own.Next());
            };
            ShowAll(*start, see);
        });
    Expect(shown == expected, "what a walk with a visitor known when compiling shows");
}

void RunGetIterator(World& world, Choices& choices) {
    Item* const start = choices.AnyItem();
    if (start == nullptr) {
        return;
    }
    const std::uint32_t seed = choices.Below(0x10000);
    std::vector<const Node*> given;
    std::vector<const Node*> expected;
    world.Both(
        [&] {
            Answers answers(seed);
            const auto iterator = start->twin->GetIterator();
            while (iterator->HasNext()) {
                given.push_back(iterator->Next());
                if (answers.Next() == VisitRemove) {
                    iterator->RemoveCurrent();
                    iterator->RemoveCurrent();
                }
            }
        },
        [&] {
            Answers answers(seed);
            WalkByLevels(*start, [&](Item& item) {
                expected.push_back(item.twin);
                return answers.Next() == VisitRemove;
            });
        });
    Expect(given == expected, "what a walk by levels gives");
}

// One node alone: leaves are not shown after their children, and of the kinds Integer64 is never shown.
void RunVisit(World&, Choices& choices) {
    if (Item* const item = choices.AnyItem()) {
        const bool postOrder = choices.Below(2) == 1;
        const Answers answers(choices.Below(0x10000));
        Recorder recorder(answers);
        const VisitCode code = item->twin->Visit(&recorder, postOrder);
        const bool shows = item->IsComposite() || (!postOrder && item->type != NodeTypeInteger64);
        Expect(code == (shows ? Answers(answers).Next() : VisitContinue), "what a visit answers");
        Expect(recorder.GetShown() == (shows ? std::vector<Shown>{{item->twin, postOrder}} : std::vector<Shown>{}),
               "what a visit shows");
    }
}

}  // namespace

const std::vector<Operation> kWalkOperations = {
    {"Iterate", 10, RunIterate},
    {"WalkNodes", 6, RunWalkNodes},
    {"GetIterator", 4, RunGetIterator},
    {"Visit", 4, RunVisit},
};

}  // namespace Model
