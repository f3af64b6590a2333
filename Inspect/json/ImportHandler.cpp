#include "json/ImportHandler.h"

#include <algorithm>
#include <cstdio>
#include <limits>

#include <KivBase/Utf.h>
#include <KivGenerics/Boolean.h>
#include <KivGenerics/Children.h>
#include <KivGenerics/Double.h>
#include <KivGenerics/Integer.h>
#include <KivGenerics/Map.h>
#include <KivGenerics/NodeCast.h>
#include <KivGenerics/ResultCode.h>
#include <KivGenerics/String.h>

#include "files/Failure.h"

namespace KivInspect {

using namespace KivGenerics;

namespace {

/// Whether a double holds a whole number with these digits exactly.
bool IsExact(double value, const std::string& digits) {
    char text[400];
    std::snprintf(text, sizeof text, "%.0f", value);
    return digits == text;
}

bool IsWhole(const std::string& digits) {
    return digits.find_first_not_of("-0123456789") == std::string::npos;
}

/// The kind that all elements have; a vector of mixed kinds could not be saved.
bool AreOfOneKind(Vector* vector) {
    const Children children(vector);
    const auto first = children.begin();
    return std::all_of(first, children.end(),
                       [first](const Node* child) { return child->GetType() == (*first)->GetType(); });
}

bool AreNumbers(Vector* vector) {
    const Children children(vector);
    return std::all_of(children.begin(), children.end(), [](const Node* child) {
        return child->GetType() == NodeTypeInteger || child->GetType() == NodeTypeDouble;
    });
}

/// Makes doubles of the numbers of 32 bits, which they hold exactly.
void MakeDoubles(Vector* vector) {
    for (int i = 0; i < vector->GetSize(TemporalityTemporary); ++i) {
        if (const auto* const integer = node_cast<Integer>(vector->GetNV(i))) {
            const double value = integer->Get();
            static_cast<Double*>(vector->NewNode(i, NodeTypeDouble))->Set(value);
        }
    }
}

/// Makes a map of a vector: the same elements at the same indexes.
void MakeList(Vector* vector) {
    std::vector<Node*> elements;
    for (int i = vector->GetSize(TemporalityTemporary); i > 0; --i) {
        elements.push_back(vector->Detach(i - 1));
    }
    Composite* const parent = vector->GetParent();
    auto* const list = static_cast<Composite*>(parent->NewNode(vector->GetIndex(), NodeTypeMap, false, ImportTagList));
    int index = 0;
    for (auto element = elements.rbegin(); element != elements.rend(); ++element) {
        list->Move(index++, *element);
    }
}

}  // namespace

ImportHandler::ImportHandler(ImportResult& result, std::uint32_t levels) : result_(result), levels_(levels) {
    const std::pair<SemanticTag, const char*> tags[] = {{ImportTagDocument, "document"}, {ImportTagObject, "object"},
                                                        {ImportTagList, "list"},         {ImportTagNull, "null"},
                                                        {ImportTagValue, "value"},       {ImportTagNumber, "number"},
                                                        {ImportTagText, "text"}};
    for (const auto& [tag, name] : tags) {
        result_.names.SetTag(tag, name);
    }
    result_.names.SetIndex(ImportTagDocument, 0, "document");
    result_.names.SetIndex(ImportTagValue, 0, "value");
    result_.names.SetIndex(ImportTagNumber, 0, "digits");
    result_.names.SetIndex(ImportTagText, 0, "pieces");
    open_.push_back(static_cast<Composite*>(result_.tree->NewRoot(NodeTypeMap, false, ImportTagDocument)));
}

/// A new node where the next value goes. All are persistent: what is empty would not be saved otherwise.
Node* ImportHandler::Add(NodeType kind, SemanticTag tag) {
    // A save keeps no values in the root.
    if (open_.size() == 1 && kind != NodeTypeVector && tag != ImportTagObject && tag != ImportTagValue) {
        open_.push_back(static_cast<Composite*>(Add(NodeTypeMap, ImportTagValue)));
        index_ = 0;
    }
    Composite* const parent = open_.back();
    if (auto* const vector = node_cast<Vector>(parent)) {
        Node* const element = vector->Insert(vector->GetSize(TemporalityTemporary), kind, tag);
        element->SetTemporality(TemporalityPersistent);
        return element;
    }
    result_.replaced += parent->Get(index_) != nullptr ? 1 : 0;
    return parent->NewNode(index_, kind, false, tag);
}

Map* ImportHandler::AddMap(SemanticTag tag) {
    return static_cast<Map*>(Add(NodeTypeMap, tag));
}

void ImportHandler::Open(Node* node) {
    open_.push_back(static_cast<Composite*>(node));
    if (open_.size() > levels_) {
        throw Failure(InspectTooDeep, "arrays and objects are nested too deep: a saved tree has at most " +
                                          std::to_string(levels_) + " levels, the root included.");
    }
}

void ImportHandler::Null() {
    AddMap(ImportTagNull);
}

void ImportHandler::Boolean(bool value) {
    static_cast<KivGenerics::Boolean*>(Add(NodeTypeBoolean))->Set(value);
}

void ImportHandler::AddDouble(double value) {
    static_cast<Double*>(Add(NodeTypeDouble))->Set(value);
}

void ImportHandler::AddDigits(const std::string& digits) {
    static_cast<KivGenerics::String*>(AddMap(ImportTagNumber)->NewNode(0, NodeTypeString))
        ->Set(KivBase::FromUtf8(digits));
}

void ImportHandler::Integer(std::int64_t value) {
    using Limits = std::numeric_limits<std::int32_t>;
    if ((Limits::min)() <= value && value <= (Limits::max)()) {
        static_cast<KivGenerics::Integer*>(Add(NodeTypeInteger))->Set(static_cast<std::int32_t>(value));
    } else {
        Float(static_cast<double>(value), std::to_string(value));
    }
}

void ImportHandler::Unsigned(std::uint64_t value) {
    Float(static_cast<double>(value), std::to_string(value));
}

void ImportHandler::Float(double value, const std::string& digits) {
    if (IsWhole(digits) && !IsExact(value, digits)) {
        AddDigits(digits);
    } else {
        AddDouble(value);
    }
}

/// A text that no saved file can hold: with NUL, or too long. An empty piece stands for one NUL.
void ImportHandler::AddPieces(const KivBase::WString& text) {
    auto* const pieces = static_cast<Vector*>(AddMap(ImportTagText)->NewNode(0, NodeTypeVector));
    for (std::size_t i = 0; i < text.size();) {
        const std::size_t nul = (std::min)(text.find(u'\0', i), text.size());
        const std::size_t end = (std::min)(nul, i + MaxStringUnits);
        static_cast<KivGenerics::String*>(pieces->Add(NodeTypeString))->Set(text.substr(i, end - i));
        i = end == i ? i + 1 : end;
    }
}

void ImportHandler::String(std::string& value) {
    const KivBase::WString text = KivBase::FromUtf8(value);
    if (text.size() > MaxStringUnits || text.find(u'\0') != KivBase::WString::npos) {
        AddPieces(text);
    } else {
        static_cast<KivGenerics::String*>(Add(NodeTypeString))->Set(text);
    }
}

void ImportHandler::StartObject() {
    Open(AddMap(ImportTagObject));
}

int ImportHandler::NumberOf(const std::string& name) {
    const auto found = numbers_.emplace(name, static_cast<int>(numbers_.size()));
    if (found.second) {
        result_.names.SetIndex(ImportTagObject, found.first->second, name);
    }
    return found.first->second;
}

void ImportHandler::Key(std::string& key) {
    index_ = NumberOf(key);
}

void ImportHandler::StartArray() {
    Open(Add(NodeTypeVector));
}

void ImportHandler::EndArray() {
    auto* const vector = static_cast<Vector*>(open_.back());
    open_.pop_back();
    if (vector->IsEmpty() || AreOfOneKind(vector)) {
        return;
    }
    if (AreNumbers(vector)) {
        MakeDoubles(vector);
    } else {
        MakeList(vector);
    }
}

}  // namespace KivInspect
