#include <KivInspect/Names.h>

#include <charconv>
#include <vector>

#include <KivInspect/ValueText.h>

#include "files/Failure.h"
#include "json/JsonParser.h"
#include "json/JsonText.h"

namespace KivInspect {

using KivGenerics::SemanticTag;

namespace {

constexpr const char* Expected =
    R"(a dictionary of names looks like {"names": 1, "tags": {"4108": {"name": "group", "indexes": {"0": "label"}}}})";

int ToNumber(const std::string& text) {
    int number = 0;
    const auto read = std::from_chars(text.data(), text.data() + text.size(), number);
    if (read.ec != std::errc() || read.ptr != text.data() + text.size()) {
        throw Failure(InspectMalformed, "\"" + text + "\" is no number: " + Expected);
    }
    return number;
}

/// Takes names where they stand: the members on the way there are the path.
class NamesHandler final : public JsonHandler {
public:
    explicit NamesHandler(Names& names) : names_(names) {}

    void Null() override { Refuse(); }
    void Boolean(bool /*value*/) override { Refuse(); }
    void Integer(std::int64_t value) override {
        if (path_.size() != 1 || path_[0] != "names" || value != 1) {
            Refuse();
        }
        versionSeen_ = true;
    }
    void Unsigned(std::uint64_t /*value*/) override { Refuse(); }
    void Float(double /*value*/, const std::string& /*digits*/) override { Refuse(); }
    void String(std::string& value) override {
        if (path_.size() == 3 && path_[0] == "tags" && path_[2] == "name") {
            names_.SetTag(SemanticTag(ToNumber(path_[1])), value);
        } else if (path_.size() == 4 && path_[0] == "tags" && path_[2] == "indexes") {
            names_.SetIndex(SemanticTag(ToNumber(path_[1])), ToNumber(path_[3]), value);
        } else {
            Refuse();
        }
    }
    void StartObject() override {
        if (path_.size() == 4) {
            Refuse();
        }
        path_.emplace_back();
    }
    void Key(std::string& key) override { path_.back() = key; }
    void EndObject() override {
        path_.pop_back();
        if (path_.empty() && !versionSeen_) {
            Refuse();
        }
    }
    void StartArray() override { Refuse(); }
    void EndArray() override { Refuse(); }

private:
    [[noreturn]] static void Refuse() { throw Failure(InspectMalformed, Expected); }

    Names& names_;
    std::vector<std::string> path_;
    bool versionSeen_ = false;
};

}  // namespace

NamesResult ReadNames(Source& source, const std::string& place) {
    NamesResult read;
    read.result = Guarded([&] {
        NamesHandler handler(read.names);
        ParseJson(source, place, handler);
    });
    if (!read.result.Ok()) {
        read.names = Names();
    }
    return read;
}

void WriteNames(const Names& names, Sink& sink) {
    BufferedSink buffered(sink);
    std::string& text = buffered.GetText();
    text += "{\n  \"names\": 1,\n  \"tags\": {";
    const char* nextTag = "\n";
    for (const auto& [tag, of] : names.tags_) {
        text += nextTag;
        text += "    \"" + std::to_string(tag) + "\": {";
        if (of.name) {
            text += "\n      \"name\": ";
            AppendJsonString(text, *of.name);
        }
        if (!of.byIndex.empty()) {
            text += of.name ? ",\n      \"indexes\": {" : "\n      \"indexes\": {";
            const char* nextIndex = "\n";
            for (const auto& [index, name] : of.byIndex) {
                text += nextIndex;
                text += "        \"" + std::to_string(index) + "\": ";
                AppendJsonString(text, name);
                nextIndex = ",\n";
                buffered.FlushWhenFull();
            }
            text += "\n      }";
        }
        text += "\n    }";
        nextTag = ",\n";
    }
    text += names.tags_.empty() ? "}\n}\n" : "\n  }\n}\n";
    buffered.Flush();
}

}  // namespace KivInspect
