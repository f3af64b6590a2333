// What is looked up in trees at places in random order: by index, by key, and to set a value there.

#include <memory>
#include <random>

#include <KivGenerics/Boolean.h>
#include <KivGenerics/Double.h>
#include <KivGenerics/Integer.h>
#include <KivGenerics/Integer64.h>
#include <KivGenerics/Map.h>
#include <KivGenerics/NodeCast.h>
#include <KivGenerics/Vector.h>

#include "InstructionCounts.h"

using namespace KivGenerics;

namespace {

constexpr std::size_t kPlaces = 500;

/// The indexes that lead from the root to a leaf that holds a number.
using Place = std::vector<int>;
using Places = std::vector<Place>;

/// The standard prescribes what this one yields, so that places are the same everywhere.
class Random {
public:
    int Below(int limit) { return static_cast<int>(engine_() % static_cast<unsigned>(limit)); }

private:
    std::mt19937 engine_;
};

Place PlaceInNumbers(Random& random) {
    return {0, random.Below(int{kNodesOfTree})};
}

Place PlaceInRecords(Random& random) {
    constexpr int kNumberFields[] = {0, 2, 3, 4};
    const int record = random.Below(int{kNodesOfTree} / 16);
    return {0, record, kNumberFields[random.Below(4)]};
}

Place PlaceInSparse(Random& random) {
    const int map = random.Below(int{kNodesOfTree} / 41);
    return {0, map, random.Below(40) * 7};
}

Place PlaceInNested(Random& random) {
    Place place(static_cast<std::size_t>(2 + random.Below(499)), 0);
    place.push_back(1);
    place.push_back(random.Below(3));
    return place;
}

struct PlacesOfShape {
    const char* shape;
    Place (*choose)(Random& random);
};

constexpr PlacesOfShape kPlacesOfShapes[] = {
    {"numbers", PlaceInNumbers},
    {"records", PlaceInRecords},
    {"sparse", PlaceInSparse},
    {"nested", PlaceInNested},
};

Places ChoosePlaces(const std::string& shape) {
    Random random;
    Places places;
    for (const PlacesOfShape& each : kPlacesOfShapes) {
        while (each.shape == shape && places.size() < kPlaces) {
            places.push_back(each.choose(random));
        }
    }
    Require(places.size() == kPlaces);
    return places;
}

std::vector<KivBase::WString> WriteKeys(const Places& places) {
    std::vector<KivBase::WString> keys;
    for (const Place& place : places) {
        std::string key;
        for (const int index : place) {
            key += std::to_string(index) + ":";
        }
        keys.emplace_back(key.begin(), key.end());
    }
    return keys;
}

Node* Find(const Tree& tree, const Place& place) {
    Node* node = tree.GetRoot();
    for (const int index : place) {
        node = node->GetType() == NodeTypeMap ? static_cast<Map*>(node)->GetNV(index)
                                              : static_cast<Vector*>(node)->GetNV(index);
    }
    return node;
}

std::int64_t GetNumber(Node* node) {
    if (auto* const integer = node_cast<Integer>(node)) {
        return integer->Get();
    }
    if (auto* const integer = node_cast<Integer64>(node)) {
        return integer->Get();
    }
    if (auto* const number = node_cast<Double>(node)) {
        return static_cast<std::int64_t>(number->Get());
    }
    auto* const boolean = node_cast<Boolean>(node);
    Require(boolean != nullptr);
    return boolean->Get() ? 1 : 0;
}

void SetNumber(Node* node, int value) {
    if (auto* const integer = node_cast<Integer>(node)) {
        integer->Set(value);
    } else if (auto* const long_ = node_cast<Integer64>(node)) {
        long_->Set(value);
    } else if (auto* const number = node_cast<Double>(node)) {
        number->Set(value);
    } else {
        auto* const boolean = node_cast<Boolean>(node);
        Require(boolean != nullptr);
        boolean->Set(value % 2 != 0);
    }
}

/// What is looked up, chosen only when it is: writing the keys of a deep tree takes longer than to look them up.
struct Lookups {
    void Choose(const std::string& shape) {
        if (places.empty()) {
            places = ChoosePlaces(shape);
            keys = WriteKeys(places);
        }
    }

    Places places;
    std::vector<KivBase::WString> keys;
};

}  // namespace

void ListLookupCounts(std::vector<Count>& counts, const std::string& shape, const std::function<void(Input&)>& fill) {
    const auto lookups = std::make_shared<Lookups>();
    const auto prepare = [shape, fill, lookups](Input& input) {
        fill(input);
        lookups->Choose(shape);
    };
    const auto getUnits = [] { return kPlaces; };
    counts.push_back({"lookup", shape, getUnits, prepare, [lookups](Input& input) {
                          std::int64_t sum = 0;
                          for (const Place& place : lookups->places) {
                              sum += GetNumber(Find(*input.tree, place));
                          }
                          Keep(sum);
                      }});
    counts.push_back({"path", shape, getUnits, prepare, [lookups](Input& input) {
                          std::int64_t sum = 0;
                          for (const KivBase::WString& key : lookups->keys) {
                              sum += GetNumber(input.tree->FindNodeByKey(key));
                          }
                          Keep(sum);
                      }});
    counts.push_back({"set", shape, getUnits, prepare, [lookups](Input& input) {
                          int value = 0;
                          for (const Place& place : lookups->places) {
                              SetNumber(Find(*input.tree, place), ++value);
                          }
                      }});
}
