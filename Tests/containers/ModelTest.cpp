// Random sequences of operations on two maps and two vectors, compared after every step with a model made of a std::map
// and a std::vector each.

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <iterator>
#include <map>
#include <random>
#include <vector>

#include <KivGenerics/VisitorNode.h>

#include "containers/TestNodes.h"
#include "core/Invariants.h"

namespace KivGenerics::Testing {
namespace {

/// What the model knows of an Integer.
struct Leaf {
    int id;
    int temporality;
};

constexpr Leaf kNew{0, 1};

/// Merges `theirs` into `mine`; true when they agree.
bool Merge(Leaf& mine, const Leaf& theirs) {
    bool agreed = true;
    if (theirs.temporality != mine.temporality && theirs.temporality != 1) {
        agreed = mine.temporality == 1;
        mine.temporality = theirs.temporality;
    }
    return agreed && mine.id == theirs.id;
}

/// Removes the Integers of odd value.
class RemoveOdd final : public VisitorNode {
public:
    VisitCode VisitNode(Node* node, bool, NodeType) override {
        return static_cast<Integer*>(node)->Get() % 2 != 0 ? VisitRemove : VisitContinue;
    }
};

bool IsOdd(const Leaf& leaf) {
    return leaf.id % 2 != 0;
}

class ModelTest : public ContainerTest, public ::testing::WithParamInterface<SlotCase> {
protected:
    using MapModel = std::map<int, Leaf>;
    using VectorModel = std::vector<Leaf>;

    static constexpr int kIndexes[] = {0, 1, 2, 3, 4, 5, 7, 8, 9, 12, 15, 16, 17, 40, 536870911};
    static constexpr std::size_t kMostElements = 10;

    int Random(std::size_t below) { return static_cast<int>(random_() % below); }
    int RandomIndex() { return kIndexes[Random(std::size(kIndexes))]; }
    EnumOrvGenericsTemporality RandomTemporality() { return EnumOrvGenericsTemporality(1 + Random(4)); }

    /// Gives a node that an operation has just made a value and a temporality of its own.
    Leaf Dress(Node* node) {
        const Leaf leaf{++lastId_, Random(3) == 0 ? RandomTemporality() : 2};
        static_cast<Integer*>(node)->Set(leaf.id);
        node->SetTemporality(EnumOrvGenericsTemporality(leaf.temporality));
        return leaf;
    }

    Composite* Container(int which) const {
        return which < 2 ? static_cast<Composite*>(maps_[which]) : vectors_[which - 2];
    }

    /// The n-th leaf of a container in the model, and its index.
    std::pair<int, Leaf> Nth(int which, int n) const {
        if (which < 2) {
            const auto entry = std::next(mapModels_[which].begin(), n);
            return *entry;
        }
        return {n, vectorModels_[which - 2][static_cast<std::size_t>(n)]};
    }
    std::size_t Count(int which) const {
        return which < 2 ? mapModels_[which].size() : vectorModels_[which - 2].size();
    }
    void Forget(int which, int index) {
        if (which < 2) {
            mapModels_[which].erase(index);
        } else {
            VectorModel& model = vectorModels_[which - 2];
            model.erase(model.begin() + index);
        }
    }

    // Operations on all containers, each with its effect on the model.

    void RemoveOrDetach() {
        const int which = Random(4);
        if (Count(which) == 0) {
            EXPECT_EQ("Remove::Index out of range", TextOf([&] { Container(which)->Remove(RandomIndex()); }));
            return;
        }
        const auto [index, leaf] = Nth(which, Random(Count(which)));
        Node* const node = Container(which)->Get(index);
        switch (Random(4)) {
            case 0: Container(which)->Remove(index); break;
            case 1: node->Remove(); break;
            case 2:
                EXPECT_EQ(node, Container(which)->Detach(index));
                free_.emplace_back(node, leaf);
                break;
            default:
                EXPECT_EQ(node, node->Detach());
                free_.emplace_back(node, leaf);
                break;
        }
        Forget(which, index);
        if (free_.size() > 5) {
            free_.front().first->Remove();
            free_.erase(free_.begin());
        }
    }

    void Clear() {
        const int which = Random(4);
        Container(which)->Clear();
        if (which < 2) {
            mapModels_[which].clear();
        } else {
            vectorModels_[which - 2].clear();
        }
    }

    void RemoveOddOnes() {
        RemoveOdd visitor;
        const int which = Random(4);
        Container(which)->Iterate(&visitor, SemanticTagNone, 0);
        if (which < 2) {
            MapModel& model = mapModels_[which];
            for (auto entry = model.begin(); entry != model.end();) {
                entry = IsOdd(entry->second) ? model.erase(entry) : std::next(entry);
            }
        } else {
            VectorModel& model = vectorModels_[which - 2];
            model.erase(std::remove_if(model.begin(), model.end(), IsOdd), model.end());
        }
    }

    void PopulateOrMerge() {
        const int to = Random(2);
        const int from = Random(2);
        switch (Random(4)) {
            case 0:
                maps_[to]->Populate(maps_[from]);
                mapModels_[to] = MapModel(mapModels_[from]);
                break;
            case 1:
                vectors_[to]->Populate(vectors_[from]);
                vectorModels_[to] = VectorModel(vectorModels_[from]);
                break;
            case 2: {
                bool agreed = true;
                for (const auto& [index, leaf] : MapModel(mapModels_[from])) {
                    const auto [mine, added] = mapModels_[to].emplace(index, leaf);
                    agreed = (added || Merge(mine->second, leaf)) && agreed;
                }
                EXPECT_EQ(agreed, maps_[to]->MergeWith(maps_[from], false));
                break;
            }
            default: {
                bool agreed = true;
                VectorModel& model = vectorModels_[to];
                const VectorModel other = vectorModels_[from];
                for (std::size_t i = 0; i < other.size(); ++i) {
                    if (i == model.size()) {
                        model.push_back(other[i]);
                    } else {
                        agreed = Merge(model[i], other[i]) && agreed;
                    }
                }
                EXPECT_EQ(agreed, vectors_[to]->MergeWith(vectors_[from], true));
                break;
            }
        }
    }

    // Operations on maps.

    void PutIntoMap() {
        const int which = Random(2);
        const int index = RandomIndex();
        mapModels_[which][index] = Dress(maps_[which]->NewNode(index, NodeTypeInteger));
    }

    void MoveIntoMap() {
        const int to = Random(2);
        const int index = RandomIndex();
        const int from = Random(5);
        if (from < 4 ? Count(from) == 0 : free_.empty()) {
            return;
        }
        const int place = Random(from < 4 ? Count(from) : free_.size());
        const auto [fromIndex, leaf] =
            from < 4 ? Nth(from, place) : std::pair<int, Leaf>(place, free_[Size(place)].second);
        Node* const node = from < 4 ? Container(from)->Get(fromIndex) : free_[Size(place)].first;
        const std::string text = TextOf([&] { maps_[to]->Move(index, node); });
        if (mapModels_[to].count(index) != 0) {
            EXPECT_EQ("Move::Index already in use!", text);
            return;
        }
        EXPECT_EQ("", text);
        if (from < 4) {
            Forget(from, fromIndex);
        } else {
            free_.erase(free_.begin() + place);
        }
        mapModels_[to][index] = leaf;
    }

    void CopyIntoMap() {
        const int to = Random(2);
        const int index = RandomIndex();
        const int from = Random(4);
        if (Count(from) == 0) {
            return;
        }
        const auto [fromIndex, leaf] = Nth(from, Random(Count(from)));
        maps_[to]->ReplaceWithCopy(index, Container(from)->Get(fromIndex));
        // A node that is replaced by its own copy has been reset before it is copied.
        mapModels_[to][index] = from == to && fromIndex == index ? kNew : leaf;
    }

    // Operations on vectors.

    void PutIntoVector() {
        const int which = Random(2);
        Vector* const vector = vectors_[which];
        VectorModel& model = vectorModels_[which];
        const int index = Random(model.size() + 1);
        switch (Random(3)) {
            case 0: model.push_back(Dress(vector->Add(NodeTypeInteger))); break;
            case 1: model.insert(model.begin() + index, Dress(vector->Insert(index, NodeTypeInteger))); break;
            default: {
                const Leaf leaf = Dress(vector->NewNode(index, NodeTypeInteger));
                if (Size(index) == model.size()) {
                    model.push_back(leaf);
                } else {
                    model[Size(index)] = leaf;
                }
                break;
            }
        }
        if (model.size() > kMostElements) {
            vector->Clear();
            model.clear();
        }
    }

    void MoveIntoVector() {
        const int to = Random(2);
        VectorModel& model = vectorModels_[to];
        const int index = Random(model.size() + 1);
        if (!free_.empty() && Random(2) == 0) {
            vectors_[to]->InsertNode(index, free_.back().first);
            model.insert(model.begin() + index, free_.back().second);
            free_.pop_back();
            return;
        }
        const int from = Random(4);
        if (Count(from) == 0) {
            return;
        }
        const auto [fromIndex, leaf] = Nth(from, Random(Count(from)));
        const std::string text =
            TextOf([&, place = fromIndex] { vectors_[to]->Move(index, Container(from)->Get(place)); });
        if (from == to + 2 && Size(index) == model.size()) {
            EXPECT_EQ("Move::Index out of range!", text);
            return;
        }
        EXPECT_EQ("", text);
        Forget(from, fromIndex);
        model.insert(model.begin() + index, leaf);
    }

    void CopyIntoVector() {
        const int to = Random(2);
        VectorModel& model = vectorModels_[to];
        const int from = Random(4);
        if (Count(from) == 0 || model.size() >= kMostElements) {
            return;
        }
        const auto [fromIndex, leaf] = Nth(from, Random(Count(from)));
        Node* const source = Container(from)->Get(fromIndex);
        const int index = Random(model.size() + 1);
        if (Random(2) == 0) {
            vectors_[to]->AddCopy(source);
            model.push_back(leaf);
        } else {
            vectors_[to]->InsertCopy(index, source);
            model.insert(model.begin() + index, leaf);
        }
    }

    void Step() {
        switch (Random(16)) {
            case 0:
            case 1:
            case 2: PutIntoMap(); break;
            case 3:
            case 4: MoveIntoMap(); break;
            case 5: CopyIntoMap(); break;
            case 6:
            case 7: PutIntoVector(); break;
            case 8:
            case 9: MoveIntoVector(); break;
            case 10: CopyIntoVector(); break;
            case 11:
            case 12: RemoveOrDetach(); break;
            case 13: PopulateOrMerge(); break;
            case 14: Random(8) == 0 ? Clear() : RemoveOddOnes(); break;
            default: RemoveOrDetach(); break;
        }
    }

    static std::size_t Size(int n) { return static_cast<std::size_t>(n); }

    /// True when the containers hold exactly what the model says.
    bool Agrees() {
        tree_->UpdateDerivedTemporality();
        for (int which = 0; which < 4; ++which) {
            Composite* const container = Container(which);
            const int count = static_cast<int>(Count(which));
            int persistent = 0;
            Node* child = container->GetNext(-1);
            for (int n = 0; n < count; ++n, child = container->GetNext(child->GetIndex())) {
                const auto [index, leaf] = Nth(which, n);
                if (child == nullptr || child->GetIndex() != index || container->Get(index) != child ||
                    container->GetNth(n) != child || static_cast<Integer*>(child)->Get() != leaf.id ||
                    child->GetTemporality() != leaf.temporality) {
                    return false;
                }
                // The vectors are persistent, and their elements share that.
                persistent += leaf.temporality <= 2 || which >= 2 ? 1 : 0;
            }
            if (child != nullptr || container->IsEmpty() != (count == 0) ||
                container->GetSize(TemporalityTemporary) != count ||
                container->GetSize(TemporalityPersistent) != persistent || container->GetNth(count) != nullptr) {
                return false;
            }
        }
        return CheckInvariants(root_) == 0;
    }

    std::mt19937 random_;
    int lastId_ = 0;
    Map* maps_[2] = {NewMap(GetParam()), NewMap()};
    Vector* vectors_[2] = {NewVector(), NewVector()};
    MapModel mapModels_[2];
    VectorModel vectorModels_[2];
    std::vector<std::pair<Node*, Leaf>> free_;
};

INSTANTIATE_TEST_SUITE_P(Slots, ModelTest, ::testing::ValuesIn(kEverySlotCount), NameOfSlotCase);

TEST_P(ModelTest, RandomSequencesLeaveWhatTheModelSays) {
    constexpr int kSteps = 12000;
    for (const unsigned seed : {1U, 20261121U}) {
        random_.seed(seed + static_cast<unsigned>(GetParam().slots));
        for (int step = 0; step < kSteps; ++step) {
            Step();
            ASSERT_TRUE(Agrees()) << "seed " << seed << ", step " << step << ": " << Show(maps_[0]) << " "
                                  << Show(maps_[1]) << " " << Show(vectors_[0]) << " " << Show(vectors_[1]);
            ASSERT_FALSE(HasFailure()) << "seed " << seed << ", step " << step;
        }
    }
}

}  // namespace
}  // namespace KivGenerics::Testing
