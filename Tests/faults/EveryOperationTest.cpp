// Every public operation of every class, on every kind of node, with every allocation failing. The headers say which
// operations there are, so that none is forgotten.

#include <filesystem>
#include <fstream>
#include <regex>
#include <set>
#include <string>

#include <gtest/gtest.h>

#include <KivGenerics/ToText.h>

#include "faults/EveryFault.h"
#include "faults/OperationTrials.h"

using namespace KivGenerics;
using Faults::AllTrials;
using Faults::Trial;

namespace {

TEST(EveryOperationTest, FailingOnceLosesNothing) {
    for (const Trial& trial : AllTrials()) {
        SCOPED_TRACE(trial.name);
        Faults::RunWithEveryFault(trial.operation, trial.promise, Faults::Lasting::Once, false);
    }
}

TEST(EveryOperationTest, FailingForGoodLosesNothing) {
    for (const Trial& trial : AllTrials()) {
        SCOPED_TRACE(trial.name);
        Faults::RunWithEveryFault(trial.operation, trial.promise, Faults::Lasting::ForGood, false);
    }
}

TEST(EveryOperationTest, ABufferThatAnswersNullOnceLosesNothing) {
    for (const Trial& trial : AllTrials()) {
        SCOPED_TRACE(trial.name);
        Faults::RunWithEveryFault(trial.operation, trial.promise, Faults::Lasting::Once, true);
    }
}

/// The public operations that a header declares for its class, constructors left out.
std::set<std::string> OperationsOf(const std::string& name) {
    std::ifstream header(std::filesystem::path(KIV_TEST_DATA) / "../../Generics/include/KivGenerics" / (name + ".h"));
    const std::regex declaration(R"(    (?! |return|//|: )[\w:<>,*& ]*?[ *&](\w+)\(.*)");
    std::set<std::string> operations;
    std::string line;
    bool isPublic = false;
    while (std::getline(header, line)) {
        std::smatch found;
        if (!line.empty() && line.back() == ':' && line.find(' ') == std::string::npos) {
            isPublic = line == "public:";
        } else if (line == "};") {
            isPublic = false;
        } else if (isPublic && std::regex_match(line, found, declaration) && found[1] != name) {
            operations.insert(found[1]);
        }
    }
    return operations;
}

TEST(EveryOperationTest, NoneIsForgotten) {
    std::set<std::string> run;
    for (const Trial& each : AllTrials()) {
        run.insert(each.name);
    }
    // Reading is done by loading a tree: what it reads from is not for hosts.
    const std::set<std::string> notForHosts = {"ReadFromArchive", "operator"};
    const auto expect = [&](const std::string& header, const std::string& kind) {
        const std::set<std::string> operations = OperationsOf(header);
        EXPECT_GE(operations.size(), 3U) << header;
        for (const std::string& operation : operations) {
            if (notForHosts.count(operation) == 0) {
                EXPECT_EQ(run.count(kind + "::" + operation), 1U) << kind << "::" << operation;
            }
        }
    };
    expect("Tree", "Tree");
    expect("Iterator", "Iterator");
    for (int type = NodeTypeInteger; type <= NodeTypeInteger64; ++type) {
        const std::string kind = ToText(NodeType(type));
        expect(kind, kind);
        expect("Node", kind);
        if (IsCompositeType(NodeType(type))) {
            expect("Composite", kind);
        }
    }
}

}  // namespace
