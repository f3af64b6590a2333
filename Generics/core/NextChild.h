#pragma once

#include <KivGenerics/Composite.h>

namespace KivGenerics {

/// The first child of a composite at or behind the place `position`, which becomes the place behind it; null at the end.
/// Children may come and go between two calls.
Node* TakeNextChild(Composite& composite, int& position) noexcept;

}  // namespace KivGenerics
