#pragma once

#include <cstdint>
#include <memory>
#include <optional>
#include <stdexcept>
#include <string>
#include <utility>
#include <vector>

#include <KivBase/Guid.h>
#include <KivBase/WString.h>
#include <KivGenerics/Exception.h>
#include <KivGenerics/Tree.h>

#include "model/Model.h"

namespace Model {

/// Thrown where the library and the model differ.
class Difference : public std::runtime_error {
public:
    using std::runtime_error::runtime_error;
};

/// One tree of the library beside its model.
struct Pair {
    KivBase::ReturnPtrI<KivGenerics::Tree> library;
    std::unique_ptr<Tree> model;
    /// Every node that an operation may choose, also below free ones, as the last comparison found them.
    std::vector<Item*> items;
};

/// Three trees, of which the first two share a forest, and what is done to them and to their models alike.
class World {
public:
    static constexpr std::size_t kTrees = 3;

    World();

    Pair& At(std::size_t i) { return pairs_[i % kTrees]; }
    Pair& Of(const Item& item);
    /// Lets the tree go and makes a new one.
    void Renew(std::size_t i);

    /// Does the same to both. Either both refuse, with the same text, or both give the same answer: a number, or a node.
    template <class Library, class Plain>
    void Both(Library library, Plain plain) {
        Settle(Attempt(library), Attempt(plain));
    }

    /// Walks both trees and everything free, and compares all that can be asked of them.
    void Check(Pair& pair);
    void CheckAll();

private:
    struct Answer {
        std::optional<std::u16string> refusal;
        bool readOnly = false;
        std::int64_t number = 0;
        KivGenerics::Node* node = nullptr;
        Item* item = nullptr;
    };

    static void Keep(Answer& answer, KivGenerics::Node* node) { answer.node = node; }
    static void Keep(Answer& answer, Item* item) { answer.item = item; }
    static void Keep(Answer& answer, std::int64_t number) { answer.number = number; }

    template <class Operation>
    static Answer Attempt(Operation& operation) {
        Answer answer;
        try {
            if constexpr (std::is_void_v<decltype(operation())>) {
                operation();
            } else {
                Keep(answer, operation());
            }
        } catch (const KivGenerics::Exception& error) {
            answer.refusal.emplace(error.GetMessage().c_str());
            answer.readOnly = error.GetExceptionKind() == 1;
        } catch (const Refusal& refusal) {
            answer.refusal.emplace(refusal.text);
            answer.readOnly = refusal.readOnly;
        }
        return answer;
    }

    void Settle(const Answer& library, const Answer& plain);
    void CheckItem(Pair& pair, Item& item, KivGenerics::Node* node);

    Pair pairs_[kTrees];
    // What both have answered last: whether it is the same node is known when the new nodes have been found.
    KivGenerics::Node* answeredNode_ = nullptr;
    Item* answeredItem_ = nullptr;
};

/// Throws Difference unless the two are the same.
void Expect(bool same, const char* what);
/// What a node of the library holds, as the model holds it.
Value GetValue(KivGenerics::Node* node);
/// Throws Difference unless the node holds the item's value, and answers so however it is asked.
void CheckValue(const Item& item, KivGenerics::Node* node);

KivBase::WString ToLibrary(const Text& text);
GUID ToLibrary(const Id& id);
Id FromLibrary(const GUID& id);

}  // namespace Model
