#include "Report.h"

#include <cstdio>

#include <KivGenerics/IterateFlags.h>
#include <KivGenerics/ToText.h>
#include <KivGenerics/VisitorNode.h>

namespace UnicodeExample {

using namespace KivGenerics;

namespace {

class Counter final : public VisitorNode {
public:
    VisitCode VisitNode(Node* /*node*/, bool /*postOrder*/, NodeType type) override {
        ++counts[0];
        ++counts[static_cast<std::size_t>(type)];
        return VisitContinue;
    }

    NodeCounts counts{};
};

}  // namespace

NodeCounts CountNodes(Node* root) {
    Counter counter;
    if (root != nullptr) {
        root->Iterate(&counter, SemanticTagNone, IterateSelf | IterateChildren | IterateDeeper);
    }
    return counter.counts;
}

std::string FormatNumber(std::int64_t value) {
    std::string digits = std::to_string(value);
    const std::size_t start = value < 0 ? 1 : 0;
    for (std::size_t at = digits.size(); at > start + 3;) {
        at -= 3;
        digits.insert(at, ",");
    }
    return digits;
}

void Report::BeginSection(const std::string& title) {
    text_ += (text_.empty() ? "" : "\n") + title + "\n";
}

void Report::Add(const std::string& name, const std::string& value) {
    const std::size_t width = name.size() < 32 ? 32 - name.size() : 1;
    text_ += "  " + name + std::string(width, ' ') + value + "\n";
}

void Report::Require(bool holds, const std::string& what) {
    if (!holds) {
        failures_.push_back(what);
    }
}

/// Two kinds a line.
void Report::AddCounts(const NodeCounts& counts) {
    for (std::size_t type = 1; type + 6 < counts.size(); ++type) {
        char line[96];
        std::snprintf(line, sizeof line, "  %-12s%12s      %-12s%12s\n", ToText(static_cast<NodeType>(type)),
                      FormatNumber(counts[type]).c_str(), ToText(static_cast<NodeType>(type + 6)),
                      FormatNumber(counts[type + 6]).c_str());
        text_ += line;
    }
}

void Report::AddSteps() {
    std::chrono::steady_clock::duration sum{};
    const auto add = [this](const std::string& name, std::chrono::steady_clock::duration time) {
        char value[32];
        std::snprintf(value, sizeof value, "%8.1f ms", std::chrono::duration<double, std::milli>(time).count());
        Add(name, value);
    };
    for (const auto& [name, time] : steps_) {
        add(name, time);
        sum += time;
    }
    add("all steps", sum);
}

std::string Report::GetText() const {
    std::string text = text_;
    for (const std::string& failure : failures_) {
        text += "FAILED: " + failure + "\n";
    }
    return text;
}

}  // namespace UnicodeExample
