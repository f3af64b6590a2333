// pugixml. Its model is text: an element for each node, named after its kind, with its key in a map and its value as attributes;
// numbers are written as digits when they are set and read from them by the walk. An element's position is found by counting its
// siblings: records are not looked up by number, nor by path, nor set. There is no comparison: the one here compares
// element by element, in order, as texts. A vector in ascending order stands for a set.

#include <cstdlib>
#include <cstring>

#include <pugixml.hpp>

#include "Failure.h"
#include "System.h"

namespace Peers {
namespace {

using pugi::xml_node;

constexpr const char* kInteger = "i";
constexpr const char* kDouble = "d";
constexpr const char* kBoolean = "b";
constexpr const char* kText = "s";
constexpr const char* kVector = "v";
constexpr const char* kMap = "m";
constexpr const char* kKey = "k";
constexpr const char* kValue = "x";

template <bool InMap>
class Cursor {
public:
    explicit Cursor(xml_node node) : node_(node) {}

    void Integer(int key, std::int32_t value) { PutValue(kInteger, key, value); }
    void Integer64(int key, std::int64_t value) { PutValue(kInteger, key, static_cast<long long>(value)); }
    void Double(int key, double value) { PutValue(kDouble, key, value); }
    void Boolean(int key, bool value) { PutValue(kBoolean, key, value ? 1 : 0); }
    void Text(int key, const TextValue& value) { PutValue(kText, key, value.utf8.c_str()); }
    void Guid(int key, const GuidValue& value) { PutValue(kText, key, value.text.c_str()); }
    template <class Fill>
    void Vector(int key, int, Fill fill) {
        Cursor<false> cursor(Put(kVector, key));
        fill(cursor);
    }
    template <class Fill>
    void Map(int key, int, int, Fill fill) {
        Cursor<true> cursor(Put(kMap, key));
        fill(cursor);
    }
    template <class T>
    void Set(int key, const std::vector<T>& values) {
        PutSetAsVector(*this, key, values);
    }

private:
    xml_node Put(const char* name, int key) {
        xml_node made = node_.append_child(name);
        if constexpr (InMap) {
            made.append_attribute(kKey).set_value(key);
        }
        return made;
    }
    template <class T>
    void PutValue(const char* name, int key, T value) {
        Put(name, key).append_attribute(kValue).set_value(value);
    }

    xml_node node_;
};

std::int64_t GetValue(xml_node node) {
    const pugi::xml_attribute value = node.last_attribute();
    switch (*node.name()) {
        case 'i': return value.as_llong();
        case 'd': return static_cast<std::int64_t>(value.as_double());
        case 'b': return value.as_int();
        default: return static_cast<std::int64_t>(std::strlen(value.value()));
    }
}

void WalkNode(xml_node node, Seen& seen) {
    ++seen.nodes;
    if (*node.name() == *kVector || *node.name() == *kMap) {
        for (xml_node child = node.first_child(); child; child = child.next_sibling()) {
            WalkNode(child, seen);
        }
    } else {
        seen.sum += GetValue(node);
    }
}

bool AreEqual(xml_node left, xml_node right) {
    if (std::strcmp(left.name(), right.name()) != 0) {
        return false;
    }
    pugi::xml_attribute other = right.first_attribute();
    for (pugi::xml_attribute each = left.first_attribute(); each; each = each.next_attribute()) {
        if (std::strcmp(each.name(), other.name()) != 0 || std::strcmp(each.value(), other.value()) != 0) {
            return false;
        }
        other = other.next_attribute();
    }
    xml_node peer = right.first_child();
    for (xml_node child = left.first_child(); child; child = child.next_sibling()) {
        if (!AreEqual(child, peer)) {
            return false;
        }
        peer = peer.next_sibling();
    }
    return !other && !peer;
}

class StringWriter final : public pugi::xml_writer {
public:
    explicit StringWriter(std::string& text) : text_(text) {}
    void write(const void* data, std::size_t size) override { text_.append(static_cast<const char*>(data), size); }

private:
    std::string& text_;
};

class PugixmlSystem final : public System {
public:
    int GuidLength() const override { return static_cast<int>(GetRecordGuid().text.size()); }

    bool Can(Operation operation, const Workload&) const override {
        return operation != Operation::Lookup && operation != Operation::Path && operation != Operation::Set;
    }

    void Build(const Workload& workload) override {
        tree_ = std::make_unique<pugi::xml_document>();
        Cursor<true> root(tree_->append_child(kMap));
        Write(workload, root);
    }

    Seen Walk() const override { return WalkDocument(*tree_); }

    void Copy() override {
        copy_ = std::make_unique<pugi::xml_document>();
        copy_->reset(*tree_);
    }

    bool EqualsCopy() const override { return AreEqual(tree_->first_child(), copy_->first_child()); }

    std::size_t Save() override {
        text_.clear();
        StringWriter writer(text_);
        tree_->save(writer, "", pugi::format_raw | pugi::format_no_declaration, pugi::encoding_utf8);
        return text_.size();
    }

    void Load() override {
        loaded_ = std::make_unique<pugi::xml_document>();
        constexpr unsigned kOptions = pugi::parse_minimal | pugi::parse_escapes;
        if (!loaded_->load_buffer(text_.data(), text_.size(), kOptions, pugi::encoding_utf8)) {
            Fail("pugixml: loading failed");
        }
    }

    Seen WalkLoaded() const override { return WalkDocument(*loaded_); }
    void Release() override { tree_.reset(); }
    void ReleaseOthers() override {
        copy_.reset();
        loaded_.reset();
        text_ = {};
    }

private:
    static Seen WalkDocument(const pugi::xml_document& document) {
        Seen seen;
        WalkNode(document.first_child(), seen);
        return seen;
    }

    std::unique_ptr<pugi::xml_document> tree_;
    std::unique_ptr<pugi::xml_document> copy_;
    std::unique_ptr<pugi::xml_document> loaded_;
    std::string text_;
};

}  // namespace

std::unique_ptr<System> MakePugixml() {
    return std::make_unique<PugixmlSystem>();
}

}  // namespace Peers
