#include "scan/HeaderDecoder.h"

namespace KivInspect {

void HeaderDecoder::Begin(Step step, bool longCount) {
    step_ = step;
    longCount_ = longCount;
    left_ = 0;
    tag_ = 0;
    count_ = 0;
    runs_.clear();
}

void HeaderDecoder::BeginMap(bool longCount) {
    Begin(Step::Tag, longCount);
}

void HeaderDecoder::BeginVector(bool longCount) {
    Begin(Step::ElementCount, longCount);
}

/// The number of bytes of the present field, which its first byte tells.
int HeaderDecoder::SizeOf(std::uint8_t first) const noexcept {
    switch (step_) {
        case Step::Tag: return (first & 0x80) != 0 ? 4 : 2;
        case Step::Count: return longCount_ ? 4 : (first & 0x80) != 0 ? 2 : 1;
        case Step::Index: return (first & 0x40) == 0 ? 1 : (first & 0x20) != 0 ? 4 : 2;
        case Step::Kind: return (first & 63) < 16 ? 1 : 2;
        case Step::ElementCount: return longCount_ ? 4 : 2;
        case Step::ElementsKind: return 2;
        case Step::Done: return 1;
    }
    return 1;
}

bool HeaderDecoder::Take(std::uint8_t byte) {
    if (left_ == 0) {
        size_ = SizeOf(byte);
        left_ = size_;
        value_ = 0;
    }
    value_ = value_ << 8 | byte;
    left_ -= 1;
    if (left_ == 0) {
        Complete();
        return true;
    }
    return false;
}

void HeaderDecoder::Complete() {
    switch (step_) {
        case Step::Tag:
            tag_ = value_ & 0x7FFFFFFF;
            field_ = {HeaderFieldKind::Tag, tag_};
            step_ = Step::Count;
            break;
        case Step::Count:
            count_ = size_ == 2 ? value_ & 0x7FFF : value_;
            keysLeft_ = count_;
            field_ = {HeaderFieldKind::Count, count_};
            step_ = count_ > 0 ? Step::Index : Step::Done;
            break;
        case Step::Index: CompleteIndex(); break;
        case Step::Kind:
            field_ = {HeaderFieldKind::Kind, value_};
            AddKey(static_cast<std::uint16_t>(size_ == 1 ? value_ << 8 : value_));
            break;
        case Step::ElementCount:
            count_ = value_;
            field_ = {HeaderFieldKind::Count, count_};
            step_ = Step::ElementsKind;
            break;
        case Step::ElementsKind:
            field_ = {HeaderFieldKind::ElementsKind, value_};
            runs_.push_back({0, count_, {static_cast<std::uint16_t>(value_)}});
            step_ = Step::Done;
            break;
        case Step::Done: field_ = {HeaderFieldKind::Padding, value_}; break;
    }
}

void HeaderDecoder::CompleteIndex() {
    const bool hasKind = value_ >> (8 * size_ - 1) != 0;
    index_ = value_ & (size_ == 1 ? 0x3FU : size_ == 2 ? 0x1FFFU : 0x1FFFFFFFU);
    field_ = {hasKind ? HeaderFieldKind::TypedIndex : HeaderFieldKind::Index, index_};
    if (hasKind) {
        step_ = Step::Kind;
    } else {
        AddKey(0);
    }
}

void HeaderDecoder::AddKey(std::uint16_t typeCode) {
    KeyRun* const last = runs_.empty() ? nullptr : &runs_.back();
    if (last != nullptr && last->type.code == typeCode && last->first + last->count == index_) {
        last->count += 1;
    } else {
        runs_.push_back({index_, 1, {typeCode}});
    }
    keysLeft_ -= 1;
    step_ = keysLeft_ > 0 ? Step::Index : Step::Done;
}

}  // namespace KivInspect
