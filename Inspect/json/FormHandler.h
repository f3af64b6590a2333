#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

#include <KivBase/WString.h>
#include <KivGenerics/DoubleSet.h>
#include <KivGenerics/IdSet.h>
#include <KivGenerics/IntegerSet.h>
#include <KivGenerics/StringSet.h>

#include "json/JsonParser.h"
#include "tree/TreeBuilder.h"

namespace KivInspect {

/// Builds a tree while its JSON form goes by. What does not belong there throws Failure.
class FormHandler final : public JsonHandler {
public:
    explicit FormHandler(TreeBuilder& builder) : builder_(builder) {}

    void Null() override;
    void Boolean(bool value) override;
    void Integer(std::int64_t value) override;
    void Unsigned(std::uint64_t value) override { Number(static_cast<double>(value)); }
    void Float(double value, const std::string& /*digits*/) override { Number(value); }
    void String(std::string& value) override;
    void StartObject() override;
    void Key(std::string& key) override;
    void EndObject() override;
    void StartArray() override;
    void EndArray() override;

private:
    /// Where in the document it stands. Composites that are open are not kept: their number, `depth_`, is enough.
    enum class Place {
        Begin,
        Document,     ///< before a member of the document
        Version,      ///< at the value of its first member
        Root,         ///< at the value of its second member
        AfterRoot,
        Head,         ///< before a member of a node
        Index,
        Kind,
        Tag,
        Temporality,
        Value,        ///< at the value of a node
        Children,     ///< between the children of a composite
        Elements,     ///< between the elements of a set
        Wrapped,      ///< in an object that stands for a text
        BeforeUnits,
        Units,        ///< between the units of that text
        AfterUnits,
        NodeEnd,      ///< behind the value of a node
        Done,
    };

    void DocumentKey(const std::string& key);
    void HeadKey(const std::string& key);
    void StartNode();
    void MakeNode();
    void TakeInteger(std::int64_t value);
    void Number(double value);
    void Text(const KivBase::WString& value);
    void EndSet();
    /// True where a value of this kind may stand; a set's, between its elements.
    bool Fits(KivGenerics::NodeType leaf, KivGenerics::NodeType set) const noexcept;
    template <class Leaf, class Elements, class Value>
    void Keep(Elements& elements, const Value& value);

    TreeBuilder& builder_;
    Place place_ = Place::Begin;
    Place textPlace_ = Place::Value;  // where the text stands whose units are read
    bool versionSeen_ = false;
    bool kindSeen_ = false;
    NewNode head_;
    std::size_t depth_ = 0;  // of the node that is being read
    KivGenerics::Node* node_ = nullptr;
    KivGenerics::IntegerSet::Elements integers_;
    KivGenerics::IdSet::Elements ids_;
    KivGenerics::StringSet::Elements strings_;
    KivGenerics::DoubleSet::Elements doubles_;
    KivBase::WString units_;
};

}  // namespace KivInspect
