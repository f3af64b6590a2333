#include "Pass.h"

#include <algorithm>
#include <random>
#include <string>

#include "Calibration.h"
#include "Failure.h"
#include "HeapPosix.h"

namespace Peers {
namespace {

constexpr int kLookups = 1'000'000;
constexpr int kPaths = 200'000;
constexpr std::array<std::int32_t, 4> kNumberFields = {kIntegerField, kDoubleField, kBooleanField, kInteger64Field};

template <class GetField>
std::vector<Place> MakePlaces(int count, int records, unsigned seed, GetField getField) {
    std::mt19937 random(seed);
    std::uniform_int_distribution<std::int32_t> record(0, records - 1);
    std::uniform_int_distribution<std::int32_t> field(0, kRecordFields - 1);
    std::vector<Place> places;
    places.reserve(static_cast<std::size_t>(count));
    for (int i = 0; i < count; ++i) {
        const std::int32_t chosen = record(random);
        places.push_back({chosen, getField(field(random))});
    }
    return places;
}

/// Elements that are there and others, in turn.
std::vector<Place> MakeElementPlaces(const std::vector<std::vector<std::int32_t>>& sets) {
    std::mt19937 random(4);
    std::uniform_int_distribution<std::size_t> anySet(0, sets.size() - 1);
    std::vector<Place> places;
    places.reserve(kLookups);
    for (int i = 0; i < kLookups; ++i) {
        const std::size_t set = anySet(random);
        const std::int32_t element = sets[set][random() % sets[set].size()];
        places.push_back({static_cast<std::int32_t>(set), i % 2 == 0 ? element : element + 1});
    }
    return places;
}

/// Runs the operations of one pass and keeps their times.
class PassRunner {
public:
    PassRunner(System& system, const Plan& plan, bool verify) : system_(system), plan_(plan), verify_(verify) {}

    Sample Run() {
        last_ = Calibrate();
        const auto before = static_cast<double>(GetHeldBytes());
        Measure(Operation::Build, [this] { system_.Build(plan_.workload); });
        sample_.heldBytes = static_cast<double>(GetHeldBytes()) - before;
        RunReads();
        RunWhole();
        Measure(Operation::Release, [this] { system_.Release(); });
        system_.ReleaseOthers();
        return sample_;
    }

private:
    void RunReads() {
        Seen seen;
        Measure(Operation::Walk, [&] { seen = system_.Walk(); });
        Verify(seen, "walk");
        std::int64_t sum = 0;
        if (Measure(Operation::Lookup, [&] { sum = LookUp(); })) {
            Verify(sum, plan_.looked.SumFor(system_), "lookup");
        }
        if (Does(system_, plan_, Operation::Path)) {
            system_.PreparePaths(plan_.paths);
        }
        if (Measure(Operation::Path, [&] { sum = system_.FindPaths(); })) {
            Verify(sum, plan_.found.SumFor(system_), "path");
        }
        if (Measure(Operation::Set, [&] { system_.Set(plan_.sets); }) && verify_) {
            Verify(system_.Lookup(plan_.sets), plan_.set.sum, "set");
        }
    }

    void RunWhole() {
        bool equal = true;
        std::size_t bytes = 0;
        Measure(Operation::Copy, [this] { system_.Copy(); });
        if (Measure(Operation::Compare, [&] { equal = system_.EqualsCopy(); }) && !equal) {
            Fail(std::string(plan_.workload.name) + ": a copy differs");
        }
        Measure(Operation::Save, [&] { bytes = system_.Save(); });
        sample_.savedBytes = static_cast<double>(bytes);
        if (Measure(Operation::Load, [this] { system_.Load(); }) && verify_ && !plan_.Has(Operation::Set)) {
            Verify(system_.WalkLoaded(), "load");
        }
    }

    std::int64_t LookUp() const {
        return plan_.workload.sets ? system_.Contains(plan_.lookups) : system_.Lookup(plan_.lookups);
    }

    template <class Work>
    bool Measure(Operation operation, Work work) {
        if (!Does(system_, plan_, operation)) {
            return false;
        }
        const double start = GetCpuSeconds();
        work();
        const double seconds = GetCpuSeconds() - start;
        const double after = Calibrate();
        const auto index = static_cast<std::size_t>(operation);
        sample_.seconds[index] = seconds;
        sample_.calibration[index] = (std::max)(last_, after);
        last_ = after;
        return true;
    }

    void Verify(std::int64_t found, std::int64_t expected, const char* what) const {
        if (verify_ && found != expected) {
            Fail(std::string(plan_.workload.name) + ": " + what + " sees " + std::to_string(found) + ", not " +
                 std::to_string(expected));
        }
    }
    void Verify(const Seen& seen, const char* what) const {
        Verify(seen.sum, plan_.expected.SumFor(system_), what);
        if (plan_.expected.elements == 0) {  // where vectors stand for sets, their elements are nodes of their own
            Verify(seen.nodes, plan_.expected.nodes, what);
        }
    }

    System& system_;
    const Plan& plan_;
    bool verify_;
    double last_ = 0;
    Sample sample_;
};

}  // namespace

Plan::Plan(const Workload& work) : workload(work), expected(Expect(work)) {
    if (work.shape == Shape::Records) {
        const auto any = [](std::int32_t field) { return field; };
        const auto number = [](std::int32_t field) {
            return kNumberFields[static_cast<std::size_t>(field) % kNumberFields.size()];
        };
        lookups = MakePlaces(kLookups, work.size, 1, any);
        paths = MakePlaces(kPaths, work.size, 2, any);
        sets = MakePlaces(kLookups, work.size, 3, number);
        looked = ExpectLookup(lookups);
        found = ExpectLookup(paths);
        set = ExpectAfterSet(sets);
    }
    if (work.sets) {
        lookups = MakeElementPlaces(*work.sets);
        looked = ExpectContained(work, lookups);
    }
}

double Plan::GetDivisor(Operation operation) const {
    switch (operation) {
        case Operation::Lookup: return static_cast<double>(lookups.size());
        case Operation::Path: return static_cast<double>(paths.size());
        case Operation::Set: return static_cast<double>(sets.size());
        default: return static_cast<double>(workload.sets ? expected.elements : expected.nodes);
    }
}

bool Plan::Has(Operation operation) const {
    return GetDivisor(operation) > 0;
}

bool Does(const System& system, const Plan& plan, Operation operation) {
    if (operation == Operation::Lookup && plan.workload.sets && !system.HasSets()) {
        return false;
    }
    return plan.Has(operation) && system.Can(operation, plan.workload);
}

Sample RunPass(System& system, const Plan& plan, bool verify) {
    return PassRunner(system, plan, verify).Run();
}

}  // namespace Peers
