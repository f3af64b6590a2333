#pragma once

#include <string>
#include <string_view>

#include <KivInspect/Sink.h>

namespace KivTree {

/// The standard output, as a sink. It ends the program quietly when nobody reads any more.
class StandardOutput final : public KivInspect::Sink {
public:
    /// Throws Trouble when the bytes cannot be written.
    void Write(std::string_view bytes) override;
    /// Hands over what has come together; called before the program ends. Throws Trouble.
    void Flush();

private:
    std::string pending_;
};

}  // namespace KivTree
