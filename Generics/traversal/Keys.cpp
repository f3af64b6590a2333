// The keys of a node: paths of numbers from the root down, each closed by ':'.

#include <KivGenerics/Composite.h>
#include <KivLogRouter/ResourceBundle.h>

#include "core/NodeAccess.h"
#include "traversal/ReadableKeys.h"

namespace KivGenerics {
namespace {

void AppendNumber(KivBase::WString& key, std::uint32_t number, std::uint32_t base) {
    char16_t digits[32];
    char16_t* const end = digits + 32;
    char16_t* first = end;
    do {
        *--first = u"0123456789abcdef"[number % base];
        number /= base;
    } while (number != 0);
    key.append(first, end);
    key += u':';
}

template <class Use>
void ForEachFromRoot(const std::vector<int>& path, Use use) {
    for (auto part = path.rbegin(); part != path.rend(); ++part) {
        use(*part);
    }
}

template <class NumberOf>
void CollectPath(const Node& node, std::vector<int>& path, NumberOf numberOf) {
    for (const Node* step = &node; NodeAccess::GetParent(*step) != nullptr; step = NodeAccess::GetParent(*step)) {
        path.push_back(numberOf(*step));
    }
}

}  // namespace

void Node::GenerateKey(std::vector<int>& path) const {
    CollectPath(*this, path, [](const Node& node) { return node.GetIndex(); });
}

void Node::GenerateSemanticTagKey(std::vector<int>& path) const {
    CollectPath(*this, path, [](const Node& node) { return static_cast<int>(node.GetSemanticTag()); });
}

void Node::GetKey(KivBase::WString& key) const {
    key.clear();
    std::vector<int> path;
    GenerateKey(path);
    ForEachFromRoot(path, [&](int index) { AppendNumber(key, static_cast<std::uint32_t>(index), 10); });
}

void Node::GetSemanticTagKey(KivBase::WString& key) const {
    key.clear();
    std::vector<int> path;
    GenerateSemanticTagKey(path);
    ForEachFromRoot(path, [&](int tag) { AppendNumber(key, static_cast<std::uint32_t>(tag), 16); });
}

void Node::GetHumanReadableKey(int language, KivBase::WString& key) const {
    key.clear();
    std::vector<int> path;
    GenerateSemanticTagKey(path);
    KivResource::ResourceBundle* const bundle = KivLogRouter::GetResourceBundle();
    ForEachFromRoot(path, [&](int tag) {
        const KivBase::ReturnWString text =
            bundle->Lookup(GetMessageNumber(SemanticTag(tag)), static_cast<std::uint16_t>(language), u"");
        key += text.Get();
        key += u':';
    });
}

}  // namespace KivGenerics
