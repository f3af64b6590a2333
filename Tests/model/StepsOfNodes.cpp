#include "model/Steps.h"

using namespace KivGenerics;

namespace Model {
namespace {

void RunSetTemporality(World& world, Choices& choices) {
    if (Item* const item = choices.AnyItem()) {
        const EnumOrvGenericsTemporality t = choices.AnyTemporality();
        world.Both([&] { item->twin->SetTemporality(t); }, [&] { SetTemporality(*item, t); });
    }
}

void RunGetDerivedTemporality(World& world, Choices& choices) {
    if (Item* const item = choices.AnyItem()) {
        world.Both([&] { return std::int64_t{item->twin->GetDerivedTemporality()}; },
                   [&] { return std::int64_t{GetEffective(*item)}; });
    }
}

void RunCalculate(World& world, Choices& choices) {
    if (Item* const item = choices.AnyItem()) {
        world.Both([&] { return std::int64_t{item->twin->CalculateDerivedTemporality()}; },
                   [&] { return std::int64_t{Calculate(*item)}; });
    }
}

void RunClear(World& world, Choices& choices) {
    if (Item* const item = choices.AnyItem()) {
        world.Both([&] { item->twin->Clear(); }, [&] { Clear(*item); });
    }
}

void RunRemove(World& world, Choices& choices) {
    if (Item* const item = choices.AnyItem()) {
        world.Both([&] { item->twin->Remove(); }, [&] { Remove(*item); });
    }
}

void RunDetach(World& world, Choices& choices) {
    if (Item* const item = choices.AnyItem()) {
        world.Both([&] { return item->twin->Detach(); }, [&] { return &Detach(*item); });
    }
}

Item* AnySource(Choices& choices) {
    return choices.OneIn(32) ? nullptr : choices.AnyItem();
}

// A source of the same kind, where there is one near: of two any kinds the operation would mostly refuse.
Item* AnyAlike(World& world, Choices& choices, const Item& target) {
    Item* const source = AnySource(choices);
    if (source == nullptr || source->type == target.type || choices.OneIn(16)) {
        return source;
    }
    for (Item* const each : world.Of(*source).items) {
        if (each->type == target.type) {
            return each;
        }
    }
    return source;
}

void RunPopulate(World& world, Choices& choices) {
    Item* const target = choices.AnyItem();
    Item* const source = target != nullptr ? AnyAlike(world, choices, *target) : nullptr;
    if (target != nullptr && (source == nullptr || HasRoom(world, *target, CountNodes(*source)))) {
        world.Both([&] { target->twin->Populate(TwinOf(source)); }, [&] { Populate(*target, source); });
    }
}

void RunMergeWith(World& world, Choices& choices) {
    Item* const target = choices.AnyItem();
    Item* const other = target != nullptr ? AnyAlike(world, choices, *target) : nullptr;
    if (target == nullptr || (other != nullptr && other != target && IsInside(*other, *target))) {
        return;  // merging what stands below into what stands above has no promise
    }
    if (other == nullptr || HasRoom(world, *target, CountNodes(*other))) {
        const bool flag = choices.Below(2) == 1;
        world.Both([&] { return std::int64_t{target->twin->MergeWith(TwinOf(other), flag)}; },
                   [&] { return std::int64_t{Merge(*target, other)}; });
    }
}

void RunCompare(World& world, Choices& choices) {
    Item* const mine = choices.AnyItem();
    Item* const theirs = mine != nullptr ? AnyAlike(world, choices, *mine) : nullptr;
    const EnumOrvGenericsTemporality t = choices.AnyTemporality();
    const bool recalculate = choices.Below(2) == 1;
    if (mine != nullptr) {
        world.Both([&] { return std::int64_t{mine->twin->Compare(TwinOf(theirs), t, recalculate)}; },
                   [&] { return std::int64_t{Compare(*mine, theirs, t, recalculate)}; });
    }
}

void RunKeys(World&, Choices& choices) {
    if (const Item* const item = choices.AnyItem()) {
        KivBase::WString key = u"something else";
        item->twin->GetKey(key);
        Expect(key == ToLibrary(GetKey(*item)), "the key");
        item->twin->GetSemanticTagKey(key);
        Expect(key == ToLibrary(GetTagKey(*item)), "the key of semantic tags");
    }
}

}  // namespace

const std::vector<Operation> kNodeOperations = {
    {"SetTemporality", 16, RunSetTemporality},
    {"GetDerivedTemporality", 8, RunGetDerivedTemporality},
    {"CalculateDerivedTemporality", 4, RunCalculate},
    {"Clear", 2, RunClear},
    {"Remove", 4, RunRemove},
    {"Detach", 8, RunDetach},
    {"Populate", 8, RunPopulate},
    {"MergeWith", 12, RunMergeWith},
    {"Compare", 16, RunCompare},
    {"GetKey", 6, RunKeys},
};

}  // namespace Model
