#include "Systems.h"

#include <algorithm>
#include <random>

namespace Peers {
namespace {

constexpr int kShortPasses = 9;

/// Sets of even numbers in random order.
Workload MakeSets(const char* name, const char* title, int count, int elements) {
    std::mt19937 random(5);
    std::vector<std::int32_t> values(static_cast<std::size_t>(elements));
    for (int i = 0; i < elements; ++i) {
        values[static_cast<std::size_t>(i)] = 2 * i;
    }
    std::vector<std::vector<std::int32_t>> sets;
    for (int i = 0; i < count; ++i) {
        std::shuffle(values.begin(), values.end(), random);
        sets.push_back(values);
    }
    Workload workload{name, title, Shape::Sets, count};
    workload.counts = false;
    workload.sets = std::make_shared<const std::vector<std::vector<std::int32_t>>>(std::move(sets));
    return workload;
}

}  // namespace

SystemEntry GetOwn(bool oneByOne) {
    return {"this library", "own", oneByOne ? MakeOwnOneByOne : MakeOwn, {}};
}

std::vector<SystemEntry> GetPeers() {
    const std::vector<Operation> flat = {Operation::Copy, Operation::Save, Operation::Load};
    return {
        {"msgpack-c", "msgpack", MakeMsgpack, {}},      {"UnknownFieldSet", "unknown", MakeUnknownFields, {}},
        {"RapidJSON", "rapidjson", MakeRapidJson, {}},  {"std::map of std::variant", "variant", MakeVariantMap, {}},
        {"Cap'n Proto", "capnp", MakeCapnProto, flat},  {"FlexBuffers", "flexbuffers", MakeFlexBuffers, flat},
        {"Boost.JSON", "boostjson", MakeBoostJson, {}}, {"nlohmann-json", "nlohmann", MakeNlohmann, {}},
        {"protobuf", "protobuf", MakeProtobuf, {}},     {"pugixml", "pugixml", MakePugixml, {}},
    };
}

std::vector<Workload> GetWorkloads() {
    return {
        {"W1", "one vector of 1,000,000 Integers", Shape::Numbers, 1'000'000},
        {"W2", "100,000 records of 8 fields", Shape::Records, 100'000},
        {"W3", "20,000 maps of 40 Integers", Shape::Sparse, 20'000},
        {"W4", "a chain of 5,000 nested vectors", Shape::Chain, 5'000, kShortPasses},
        MakeSets("W6a", "50,000 sets of 8 integers", 50'000, 8),
        MakeSets("W6b", "10,000 sets of 64 integers", 10'000, 64),
        MakeSets("W6c", "a set of 1,000,000 integers", 1, 1'000'000),
    };
}

Workload MakeRecordedWorkload(const std::string& file) {
    Workload workload{"W5", "the tree of the Unicode Character Database", Shape::Recorded, 1};
    workload.counts = false;
    workload.recording = std::make_shared<const Recording>(Recording::Load(file));
    return workload;
}

}  // namespace Peers
