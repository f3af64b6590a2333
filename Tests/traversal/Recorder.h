#pragma once

#include <functional>
#include <string>
#include <utility>

#include <KivBase/Utf.h>
#include <KivGenerics/IterateFlags.h>
#include <KivGenerics/VisitorNode.h>

#include "containers/TestNodes.h"

namespace KivGenerics::Testing {

/// A visitor that writes down what it is shown: an Integer as its value, another leaf as its kind, a composite as its key
/// after "(" before its children and after ")" behind them. Answers VisitContinue unless told otherwise.
class Recorder final : public VisitorNode {
public:
    using Answer = std::function<VisitCode(Node*, bool)>;

    Recorder() = default;
    explicit Recorder(Answer answer) : answer_(std::move(answer)) {}

    std::string text;

    VisitCode VisitNode(Node* node, bool postOrder, NodeType type) override {
        EXPECT_EQ(type, node->GetType());
        text += text.empty() ? "" : " ";
        if (node_cast<Composite>(node) != nullptr) {
            KivBase::WString key;
            node->GetKey(key);
            text += (postOrder ? ")" : "(") + KivBase::ToUtf8(key);
        } else {
            EXPECT_FALSE(postOrder);
            text += Show(node);
        }
        return answer_ ? answer_(node, postOrder) : VisitContinue;
    }

private:
    Answer answer_;
};

/// What a walk shows.
inline std::string Walk(Node* start, int flags = 0, int tag = 0, Recorder::Answer answer = {}) {
    Recorder recorder(std::move(answer));
    start->Iterate(&recorder, SemanticTag(tag), flags);
    return recorder.text;
}

}  // namespace KivGenerics::Testing
