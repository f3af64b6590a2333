#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <utility>
#include <vector>

#include "Values.h"

namespace Peers {

/// The content of a tree in the order of a walk, to be written again into any system at the same cost.
class Recording {
public:
    /// Of a file that this library saved. Ends the process when it cannot be loaded.
    static Recording Load(const std::string& file);

    /// How many children the root has.
    int GetRootSize() const { return rootSize_; }

    template <class Cursor>
    void Replay(Cursor& root) const {
        std::size_t next = 0;
        while (next < items_.size()) {
            ReplayItem(root, next);
        }
    }

private:
    friend class Recorder;

    enum class Kind { Integer, Integer64, Double, Boolean, Text, Guid, Vector, Map, Integers, Doubles, Texts, Guids };

    struct Item {
        Kind kind;
        int key;
        int size = 0;  ///< children of a composite
        int tag = 0;  ///< of a map
        std::int64_t value = 0;  ///< a number, or where the value stands among those of its kind
    };

    template <class Cursor>
    void ReplayItem(Cursor& cursor, std::size_t& next) const {
        const Item& item = items_[next++];
        const auto fill = [this, &item, &next](auto& inner) {
            for (int i = 0; i < item.size; ++i) {
                this->ReplayItem(inner, next);
            }
        };
        const auto place = static_cast<std::size_t>(item.value);
        switch (item.kind) {
            case Kind::Integer: cursor.Integer(item.key, static_cast<std::int32_t>(item.value)); return;
            case Kind::Integer64: cursor.Integer64(item.key, item.value); return;
            case Kind::Double: cursor.Double(item.key, doubles_[place]); return;
            case Kind::Boolean: cursor.Boolean(item.key, item.value != 0); return;
            case Kind::Text: cursor.Text(item.key, texts_[place]); return;
            case Kind::Guid: cursor.Guid(item.key, guids_[place]); return;
            case Kind::Vector: cursor.Vector(item.key, item.size, fill); return;
            case Kind::Map: cursor.Map(item.key, item.size, item.tag, fill); return;
            case Kind::Integers: cursor.Set(item.key, integerSets_[place]); return;
            case Kind::Doubles: cursor.Set(item.key, doubleSets_[place]); return;
            case Kind::Texts: cursor.Set(item.key, textSets_[place]); return;
            case Kind::Guids: cursor.Set(item.key, guidSets_[place]); return;
        }
    }

    int rootSize_ = 0;
    std::vector<Item> items_;
    std::vector<double> doubles_;
    std::vector<TextValue> texts_;
    std::vector<GuidValue> guids_;
    std::vector<std::vector<std::int32_t>> integerSets_;
    std::vector<std::vector<double>> doubleSets_;
    std::vector<std::vector<TextValue>> textSets_;
    std::vector<std::vector<GuidValue>> guidSets_;
};

}  // namespace Peers
