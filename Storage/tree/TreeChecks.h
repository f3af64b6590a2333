#pragma once

#include <string>

#include <KivGenerics/Temporality.h>
#include <KivGenerics/Tree.h>
#include <KivStorage/Result.h>

namespace KivStorage {

/// The greatest temporality that a save takes.
constexpr KivGenerics::EnumOrvGenericsTemporality SaveLimit(bool withTransient) noexcept {
    return withTransient ? KivGenerics::TemporalityTransient : KivGenerics::TemporalityPersistent;
}

/// Whether the tree has composites on more than `levels` levels. Takes no stack for the levels; linear in the nodes.
/// Throws std::bad_alloc.
bool IsDeeperThan(const KivGenerics::Tree* tree, std::size_t levels);

/// Whether saving can be tried at all: there is a tree, its levels do not exhaust the stack, and its root, if it is to be
/// saved, is a map. Where the save itself would find out about the root, it would leave the tree read-only.
Result CheckSavable(KivGenerics::Tree* tree, bool withTransient, const std::string& place);

}  // namespace KivStorage
