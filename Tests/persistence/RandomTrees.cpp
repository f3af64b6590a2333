#include "persistence/RandomTrees.h"

#include <KivGenerics/Boolean.h>
#include <KivGenerics/Double.h>
#include <KivGenerics/DoubleSet.h>
#include <KivGenerics/GlobalID.h>
#include <KivGenerics/IdSet.h>
#include <KivGenerics/Integer.h>
#include <KivGenerics/Integer64.h>
#include <KivGenerics/IntegerSet.h>
#include <KivGenerics/Map.h>
#include <KivGenerics/NodeCast.h>
#include <KivGenerics/String.h>
#include <KivGenerics/StringSet.h>
#include <KivGenerics/Vector.h>

namespace KivGenerics::Testing {
namespace {

class Grower {
public:
    Grower(std::uint32_t seed, int mostTransient) : random_(seed), mostTransient_(mostTransient) {}

    void GrowRoot(Map& root) {
        for (int slot = 0; slot < root.GetSlotCount(); ++slot) {
            if (Pick(3) != 0) {
                Node* const child = root.NewNode(slot, Pick(2) == 0 ? NodeTypeVector : NodeTypeMap, false, PickTag());
                child->SetTemporality(PickTemporality());
                Grow(*child, 3);
            }
        }
    }

private:
    std::uint32_t Pick(std::uint32_t choices) { return static_cast<std::uint32_t>(random_() % choices); }
    EnumOrvGenericsTemporality PickTemporality() {
        return EnumOrvGenericsTemporality(1 + static_cast<int>(Pick(static_cast<std::uint32_t>(mostTransient_))));
    }
    SemanticTag PickTag() {
        constexpr int kTags[] = {0, 1, 2, 100, 107, 4107, 24576, 32767, 32768, 0x7FFFFFFF};
        return SemanticTag(kTags[Pick(10)]);
    }
    NodeType PickType(int levels) {
        const auto type = NodeType(1 + Pick(12));
        return levels == 0 && IsCompositeType(type) ? NodeTypeInteger : type;
    }
    GUID PickId() {
        GUID id{};
        id.Data1 = Pick(0xFFFFFFFF);
        id.Data4[3] = static_cast<unsigned char>(Pick(256));
        return id;
    }
    KivBase::WString PickText() {
        KivBase::WString text;
        for (std::uint32_t i = Pick(12); i > 0; --i) {
            text += static_cast<char16_t>(1 + Pick(0xFFFF));
        }
        return text;
    }

    void GrowMap(Map& map, int levels) {
        constexpr std::uint32_t kReaches[] = {16, 64, 300, 9000, 0x1FFFFFFF};
        for (std::uint32_t i = Pick(9); i > 0; --i) {
            const auto index = static_cast<int>(Pick(kReaches[Pick(5)]));
            Node* const child = map.NewNode(index, PickType(levels), false, PickTag());
            child->SetTemporality(PickTemporality());
            Grow(*child, levels - 1);
        }
    }

    void GrowVector(Vector& vector, int levels) {
        const NodeType type = PickType(levels);
        const auto shared = EnumOrvGenericsTemporality(1 + static_cast<int>(Pick(3)));  // 4 would come back as 0
        for (std::uint32_t i = Pick(6); i > 0; --i) {
            Node* const child = vector.Add(type, PickTag());
            child->SetTemporality(IsCompositeType(type) ? PickTemporality() : shared);
            Grow(*child, levels - 1);
        }
    }

    template <class Set, class PickElement>
    void Fill(Set& set, PickElement pick) {
        for (std::uint32_t i = Pick(5); i > 0; --i) {
            set.Add(pick());
        }
    }

    void GrowSet(Node& node) {
        if (auto* const integers = node_cast<IntegerSet>(&node)) {
            Fill(*integers, [this] { return static_cast<std::int32_t>(Pick(0xFFFFFFFF)); });
        } else if (auto* const ids = node_cast<IdSet>(&node)) {
            Fill(*ids, [this] { return PickId(); });
        } else if (auto* const texts = node_cast<StringSet>(&node)) {
            Fill(*texts, [this] { return PickText(); });
        } else if (auto* const doubles = node_cast<DoubleSet>(&node)) {
            Fill(*doubles, [this] { return Pick(1000) / 8.0 - 60; });
        }
    }

    void Grow(Node& node, int levels) {
        if (auto* const map = node_cast<Map>(&node)) {
            GrowMap(*map, levels);
        } else if (auto* const vector = node_cast<Vector>(&node)) {
            GrowVector(*vector, levels);
        } else if (auto* const integer = node_cast<Integer>(&node)) {
            integer->Set(static_cast<std::int32_t>(Pick(0xFFFFFFFF)));
        } else if (auto* const number = node_cast<Integer64>(&node)) {
            number->Set(static_cast<std::int64_t>(Pick(0x7FFFFFFF)) * 0x100000000 + Pick(0x7FFFFFFF));
        } else if (auto* const real = node_cast<Double>(&node)) {
            real->Set(Pick(0xFFFFFFFF) / 7.0);
        } else if (auto* const flag = node_cast<Boolean>(&node)) {
            flag->Set(Pick(2) == 1);
        } else if (auto* const id = node_cast<GlobalID>(&node)) {
            id->Set(PickId());
        } else if (auto* const text = node_cast<String>(&node)) {
            text->Set(PickText());
        } else {
            GrowSet(node);
        }
    }

    std::mt19937 random_;
    int mostTransient_;
};

}  // namespace

KivBase::ReturnPtrI<Tree> NewRandomTree(std::uint32_t seed, int mostTransient) {
    auto tree = CreateGenericTree(EnumOrvObjectType{});
    auto* const root = static_cast<Map*>(tree->NewRoot(NodeTypeMap, false, SemanticTag(100)));
    root->SetTemporality(TemporalityPersistent);
    Grower(seed, mostTransient).GrowRoot(*root);
    return tree;
}

}  // namespace KivGenerics::Testing
