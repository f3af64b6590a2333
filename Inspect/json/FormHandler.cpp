#include "json/FormHandler.h"

#include <limits>

#include <KivBase/Utf.h>
#include <KivGenerics/Boolean.h>
#include <KivGenerics/Double.h>
#include <KivGenerics/GlobalID.h>
#include <KivGenerics/Integer.h>
#include <KivGenerics/Integer64.h>
#include <KivGenerics/String.h>

#include "files/Failure.h"
#include "text/Scan.h"

namespace KivInspect {

using namespace KivGenerics;

namespace {

[[noreturn]] void Refuse(const std::string& what) {
    throw Failure(InspectMalformed, what + " Docs/json-form.md draws the form.");
}

std::int32_t To32Bits(std::int64_t value) {
    if (value < (std::numeric_limits<std::int32_t>::min)() || (std::numeric_limits<std::int32_t>::max)() < value) {
        Refuse("this number has more than 32 bits.");
    }
    return static_cast<std::int32_t>(value);
}

/// What the whole of a text says, as `take` reads it.
template <class Take>
auto Whole(const std::string& text, Take take) {
    Scan scan(text);
    const auto value = take(scan);
    if (!scan.AtEnd()) {
        Refuse("\"" + text + "\" is more than the value that is expected here.");
    }
    return value;
}

template <class Set, class Elements>
void Give(Node* node, Elements& elements) {
    static_cast<Set*>(node)->Set(elements);
    elements.clear();
}

}  // namespace

bool FormHandler::Fits(NodeType leaf, NodeType set) const noexcept {
    return (place_ == Place::Value && node_->GetType() == leaf) ||
           (place_ == Place::Elements && node_->GetType() == set);
}

/// Keeps a value that fits: a leaf's in the node, a set's among the elements.
template <class Leaf, class Elements, class Value>
void FormHandler::Keep(Elements& elements, const Value& value) {
    if (place_ == Place::Elements) {
        elements.insert(elements.end(), value);
    } else {
        static_cast<Leaf*>(node_)->Set(value);
        place_ = Place::NodeEnd;
    }
}

void FormHandler::Null() {
    if (place_ != Place::Root) {
        Refuse("null stands for an empty tree, and for nothing else.");
    }
    place_ = Place::AfterRoot;
}

void FormHandler::Boolean(bool value) {
    if (place_ != Place::Value || node_->GetType() != NodeTypeBoolean) {
        Refuse("true or false is the value of a Boolean alone.");
    }
    static_cast<KivGenerics::Boolean*>(node_)->Set(value);
    place_ = Place::NodeEnd;
}

void FormHandler::Integer(std::int64_t value) {
    switch (place_) {
        case Place::Version:
            if (value != 1) {
                Refuse("the version of the JSON form is not known: read it with a newer release.");
            }
            place_ = Place::Document;
            break;
        case Place::Index:
            head_.index = To32Bits(value);
            place_ = Place::Head;
            break;
        case Place::Tag:
            head_.tag = To32Bits(value);
            place_ = Place::Head;
            break;
        case Place::Temporality:
            head_.temporality = To32Bits(value);
            place_ = Place::Head;
            break;
        case Place::Units:
            if (value < 0 || 0xFFFF < value) {
                Refuse("a unit is a number from 0 to 65535.");
            }
            units_ += static_cast<char16_t>(value);
            break;
        default: TakeInteger(value); break;
    }
    if (units_.size() > builder_.GetTextLimit()) {
        throw Failure(InspectTextTooLong,
                      "a text has more than " + std::to_string(builder_.GetTextLimit()) + " units.");
    }
}

void FormHandler::TakeInteger(std::int64_t value) {
    if (Fits(NodeTypeInteger, NodeTypeIntegerSet)) {
        Keep<KivGenerics::Integer>(integers_, To32Bits(value));
    } else {
        Number(static_cast<double>(value));
    }
}

void FormHandler::Number(double value) {
    if (!Fits(NodeTypeDouble, NodeTypeDoubleSet)) {
        Refuse("this number does not belong here.");
    }
    Keep<Double>(doubles_, value);
}

void FormHandler::Text(const KivBase::WString& value) {
    if (value.size() > builder_.GetTextLimit()) {
        throw Failure(InspectTextTooLong,
                      "a text has more than " + std::to_string(builder_.GetTextLimit()) + " units.");
    }
    Keep<KivGenerics::String>(strings_, value);
}

void FormHandler::String(std::string& value) {
    if (place_ == Place::Kind) {
        const auto kind = FindKind(value);
        if (!kind) {
            Refuse("\"" + value + "\" is no kind of node.");
        }
        head_.kind = *kind;
        kindSeen_ = true;
        place_ = Place::Head;
    } else if (place_ == Place::Temporality) {
        head_.temporality = FindTemporality(value);
        if (!head_.temporality) {
            Refuse("\"" + value + "\" is no temporality.");
        }
        place_ = Place::Head;
    } else if (Fits(NodeTypeString, NodeTypeStringSet)) {
        Text(KivBase::FromUtf8(value));
    } else if (Fits(NodeTypeDouble, NodeTypeDoubleSet)) {
        Keep<Double>(doubles_, Whole(value, [](Scan& scan) { return scan.TakeDouble(); }));
    } else if (Fits(NodeTypeGlobalID, NodeTypeIdSet)) {
        Keep<GlobalID>(ids_, Whole(value, [](Scan& scan) { return scan.TakeGuid(); }));
    } else if (place_ == Place::Value && node_->GetType() == NodeTypeInteger64) {
        static_cast<Integer64*>(node_)->Set(Whole(value, [](Scan& scan) { return scan.TakeInteger64(); }));
        place_ = Place::NodeEnd;
    } else {
        Refuse("a string does not belong here.");
    }
}

void FormHandler::StartNode() {
    head_ = NewNode();
    kindSeen_ = false;
    place_ = Place::Head;
}

void FormHandler::StartObject() {
    if (place_ == Place::Begin) {
        place_ = Place::Document;
    } else if (place_ == Place::Root) {
        StartNode();
    } else if (place_ == Place::Children) {
        ++depth_;
        StartNode();
    } else if (Fits(NodeTypeString, NodeTypeStringSet)) {
        textPlace_ = place_;
        place_ = Place::Wrapped;
    } else {
        Refuse("an object does not belong here.");
    }
}

void FormHandler::DocumentKey(const std::string& key) {
    if (key == "kivtree" && !versionSeen_) {
        versionSeen_ = true;
        place_ = Place::Version;
    } else if (key == "root" && versionSeen_) {
        place_ = Place::Root;
    } else {
        Refuse("the document has the members \"kivtree\" and \"root\", in this order.");
    }
}

void FormHandler::HeadKey(const std::string& key) {
    if (key == "index") {
        place_ = Place::Index;
    } else if (key == "kind") {
        place_ = Place::Kind;
    } else if (key == "tag") {
        place_ = Place::Tag;
    } else if (key == "temporality") {
        place_ = Place::Temporality;
    } else if (key == "value") {
        MakeNode();
    } else {
        Refuse("a node has no member \"" + key + "\".");
    }
}

void FormHandler::MakeNode() {
    if (!kindSeen_) {
        Refuse("a node's \"kind\" must stand before its \"value\".");
    }
    node_ = builder_.Add(depth_, head_);
    place_ = Place::Value;
}

void FormHandler::Key(std::string& key) {
    switch (place_) {
        case Place::Document: DocumentKey(key); break;
        case Place::Head: HeadKey(key); break;
        case Place::Wrapped:
            if (key != "utf16") {
                Refuse("an object in place of a text has the member \"utf16\".");
            }
            place_ = Place::BeforeUnits;
            break;
        case Place::NodeEnd: Refuse("a node's \"value\" must be its last member.");
        default: Refuse("the member \"" + key + "\" does not belong here.");
    }
}

void FormHandler::EndObject() {
    switch (place_) {
        case Place::AfterRoot: place_ = Place::Done; break;
        case Place::NodeEnd:
            place_ = depth_ == 0 ? Place::AfterRoot : Place::Children;
            depth_ -= depth_ == 0 ? 0 : 1;
            break;
        case Place::AfterUnits:
            place_ = textPlace_;
            Text(units_);
            units_.clear();
            break;
        case Place::Document: Refuse("the document has no \"root\".");
        case Place::Head: Refuse("a node has no \"value\".");
        default: Refuse("this object lacks a member.");
    }
}

void FormHandler::StartArray() {
    if (place_ == Place::BeforeUnits) {
        place_ = Place::Units;
    } else if (place_ == Place::Value && IsCompositeType(node_->GetType())) {
        place_ = Place::Children;
    } else if (place_ == Place::Value && NodeTypeIntegerSet <= node_->GetType() &&
               node_->GetType() <= NodeTypeDoubleSet) {
        place_ = Place::Elements;
    } else {
        Refuse("a list does not belong here.");
    }
}

void FormHandler::EndSet() {
    switch (node_->GetType()) {
        case NodeTypeIntegerSet: Give<IntegerSet>(node_, integers_); break;
        case NodeTypeIdSet: Give<IdSet>(node_, ids_); break;
        case NodeTypeStringSet: Give<StringSet>(node_, strings_); break;
        default: Give<DoubleSet>(node_, doubles_); break;
    }
}

void FormHandler::EndArray() {
    if (place_ == Place::Units) {
        place_ = Place::AfterUnits;
        return;
    }
    if (place_ == Place::Elements) {
        EndSet();
    }
    place_ = Place::NodeEnd;
}

}  // namespace KivInspect
