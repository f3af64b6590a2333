#include <KivResource/ResourceBundle.h>

#include <atomic>

#include <KivLogRouter/ResourceBundle.h>

namespace KivResource {

TextBundle::TextBundle() = default;
TextBundle::~TextBundle() = default;

void TextBundle::SetText(std::uint32_t messageNumber, std::uint16_t language, const char16_t* text) {
    const auto key = std::make_pair(messageNumber, language);
    if (text == nullptr) {
        texts_.erase(key);
    } else {
        texts_[key] = text;
    }
}

KivBase::ReturnWString TextBundle::Lookup(std::uint32_t messageNumber, std::uint16_t language,
                                          const char16_t* defaultText) const {
    const auto text = texts_.find(std::make_pair(messageNumber, language));
    return KivBase::ReturnWString(text != texts_.end() ? text->second.c_str() : defaultText);
}

}  // namespace KivResource

namespace KivLogRouter {
namespace {

std::atomic<KivResource::ResourceBundle*> currentBundle{nullptr};

}  // namespace

KivResource::TextBundle& GetDefaultResourceBundle() noexcept {
    static KivResource::TextBundle bundle;
    return bundle;
}

KivResource::ResourceBundle* GetResourceBundle() noexcept {
    KivResource::ResourceBundle* const bundle = currentBundle.load();
    return bundle != nullptr ? bundle : &GetDefaultResourceBundle();
}

KivResource::ResourceBundle* SetResourceBundle(KivResource::ResourceBundle* bundle) noexcept {
    return currentBundle.exchange(bundle);
}

}  // namespace KivLogRouter
