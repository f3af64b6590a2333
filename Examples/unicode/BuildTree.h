#pragma once

#include <KivBase/ReturnPtrI.h>
#include <KivGenerics/Tree.h>

#include "Database.h"

namespace UnicodeExample {

constexpr int AnyAge = 32767;

/// A tree, laid out as Schema.h says, of what the database holds up to the version `upToAge` (100 * major + minor).
/// Throws std::bad_alloc.
KivBase::ReturnPtrI<KivGenerics::Tree> BuildTree(const Database& database, int upToAge = AnyAge);

/// "6.0" for 600.
std::string FormatAge(int age);

}  // namespace UnicodeExample
