#include "Systems.h"

namespace Peers {

SystemEntry GetOwn() {
    return {"this library", "own", MakeOwn};
}

std::vector<SystemEntry> GetPeers() {
    return {
        {"msgpack-c", "msgpack", MakeMsgpack},
        {"UnknownFieldSet", "unknown", MakeUnknownFields},
        {"RapidJSON", "rapidjson", MakeRapidJson},
        {"std::map of std::variant", "variant", MakeVariantMap},
    };
}

std::vector<Workload> GetWorkloads() {
    return {
        {"W1", "one vector of 1,000,000 Integers", Shape::Numbers, 1'000'000},
        {"W2", "100,000 records of 8 fields", Shape::Records, 100'000},
        {"W3", "20,000 maps of 40 Integers", Shape::Sparse, 20'000},
        {"W4", "a chain of 5,000 nested vectors", Shape::Chain, 5'000, 0, 9},
    };
}

}  // namespace Peers
