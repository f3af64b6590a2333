#include "compare/CopyNode.h"

#include <KivGenerics/NodeCast.h>
#include <KivGenerics/String.h>

#include "compare/PairWalk.h"

namespace KivInspect {

using namespace KivGenerics;

namespace {

/// The copies that nodes make of texts end before the first NUL.
Node* WithWholeTexts(Node* copy, Node* source) {
    PairWalk walk(copy, source, static_cast<EnumOrvGenericsTemporality>(127));
    while (walk.Next()) {
        String* const text = node_cast<String>(walk.Get().left);
        const String* const original = node_cast<String>(walk.Get().right);
        if (text != nullptr && original != nullptr && text->GetLength() != original->GetLength()) {
            text->Set(KivBase::WString(original->Get(), original->GetLength()));
        }
    }
    return copy;
}

}  // namespace

Node* CopyTo(Composite* parent, int index, Node* source) {
    return WithWholeTexts(parent->ReplaceWithCopy(index, source), source);
}

Node* InsertCopyTo(Vector* vector, int index, Node* source) {
    return WithWholeTexts(vector->InsertCopy(index, source), source);
}

void CopyTo(Tree* tree, Node* source) {
    if (source == nullptr) {
        tree->RemoveRoot();
    } else {
        WithWholeTexts(tree->CopyFromNode(source), source);
    }
}

}  // namespace KivInspect
