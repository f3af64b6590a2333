#pragma once

#include <cstdint>
#include <string>
#include <unordered_map>
#include <vector>

#include <KivBase/WString.h>
#include <KivGenerics/Composite.h>
#include <KivGenerics/Vector.h>
#include <KivInspect/ImportJson.h>

#include "json/JsonParser.h"

namespace KivInspect {

/// Builds a tree of any JSON document while it goes by.
class ImportHandler final : public JsonHandler {
public:
    ImportHandler(ImportResult& result, std::uint32_t levels);

    void Null() override;
    void Boolean(bool value) override;
    void Integer(std::int64_t value) override;
    void Unsigned(std::uint64_t value) override;
    void Float(double value, const std::string& digits) override;
    void String(std::string& value) override;
    void StartObject() override;
    void Key(std::string& key) override;
    void EndObject() override { open_.pop_back(); }
    void StartArray() override;
    void EndArray() override;

private:
    KivGenerics::Node* Add(KivGenerics::NodeType kind, KivGenerics::SemanticTag tag = KivGenerics::SemanticTagNone);
    KivGenerics::Map* AddMap(KivGenerics::SemanticTag tag);
    void AddDouble(double value);
    void AddDigits(const std::string& digits);
    void AddPieces(const KivBase::WString& text);
    void Open(KivGenerics::Node* node);
    int NumberOf(const std::string& name);

    ImportResult& result_;
    std::uint32_t levels_;
    std::vector<KivGenerics::Composite*> open_;  // on the way to where the next value goes
    int index_ = 0;  // where it goes, in a map
    std::unordered_map<std::string, int> numbers_;  // of the names of members
};

}  // namespace KivInspect
