#pragma once

#include <array>
#include <chrono>
#include <cstdint>
#include <string>
#include <type_traits>
#include <utility>
#include <vector>

#include <KivGenerics/Node.h>

namespace UnicodeExample {

/// By NodeType: how many nodes there are; element 0 is the sum.
using NodeCounts = std::array<std::int64_t, 13>;

/// Counts a node and everything below it; `root` may be null.
NodeCounts CountNodes(KivGenerics::Node* root);

/// 1234567 as "1,234,567".
std::string FormatNumber(std::int64_t value);

/// What the program did, on one page.
class Report {
public:
    /// Runs a step and notes how long it took; returns what the step returns.
    template <class Step>
    auto Run(const std::string& name, Step&& step) {
        const auto start = std::chrono::steady_clock::now();
        if constexpr (std::is_void_v<std::invoke_result_t<Step>>) {
            step();
            AddStep(name, start);
        } else {
            auto result = step();
            AddStep(name, start);
            return result;
        }
    }

    /// A line "name   value" of the section that was begun last.
    void Add(const std::string& name, const std::string& value);
    void BeginSection(const std::string& title);
    /// Notes a failure where `holds` is false; the page ends with them.
    void Require(bool holds, const std::string& what);

    void AddCounts(const NodeCounts& counts);
    void AddSteps();

    bool HasFailed() const { return !failures_.empty(); }
    std::string GetText() const;

private:
    void AddStep(const std::string& name, std::chrono::steady_clock::time_point start) {
        steps_.emplace_back(name, std::chrono::steady_clock::now() - start);
    }

    std::string text_;
    std::vector<std::pair<std::string, std::chrono::steady_clock::duration>> steps_;
    std::vector<std::string> failures_;
};

}  // namespace UnicodeExample
