#pragma once

#include <cstdint>
#include <map>
#include <utility>

#include <KivBase/Export.h>
#include <KivBase/ReturnWString.h>
#include <KivBase/WString.h>

namespace KivResource {

/// Texts by message number and language.
class ResourceBundle {
public:
    virtual ~ResourceBundle() = default;
    /// The text of a message in a language, or `defaultText` where there is none. Throws std::bad_alloc.
    virtual KivBase::ReturnWString Lookup(std::uint32_t messageNumber, std::uint16_t language,
                                          const char16_t* defaultText) const = 0;
};

/// A bundle that the host fills. Threads: filling and looking up must not overlap.
class KIV_PLATFORM_EXPORT TextBundle : public ResourceBundle {
public:
    TextBundle();
    ~TextBundle() override;
    /// Null removes the text. Throws std::bad_alloc.
    void SetText(std::uint32_t messageNumber, std::uint16_t language, const char16_t* text);
    KivBase::ReturnWString Lookup(std::uint32_t messageNumber, std::uint16_t language,
                                  const char16_t* defaultText) const override;

private:
    std::map<std::pair<std::uint32_t, std::uint16_t>, KivBase::WString> texts_;
};

}  // namespace KivResource
