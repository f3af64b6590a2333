// The system's header first, with every macro that it brings, then every public header.
// clang-format off
#include <windows.h>
#include <oaidl.h>

#if !defined(GetMessage)
#error "the macro that this is about is not there"
#endif

// The system's header makes these two in other compilers than this one, whose own headers do not bear them.
#include <atomic>
#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <exception>
#include <filesystem>
#include <iterator>
#include <limits>
#include <map>
#include <memory>
#include <new>
#include <set>
#include <string>
#include <string_view>
#include <type_traits>
#include <utility>
#include <vector>
#undef min
#undef max
#define min(a, b) (((a) < (b)) ? (a) : (b))
#define max(a, b) (((a) > (b)) ? (a) : (b))

#include <KivBase/Allocator.h>
#include <KivBase/Buffer.h>
#include <KivBase/Export.h>
#include <KivBase/Guid.h>
#include <KivBase/Message.h>
#include <KivBase/ModuleEntry.h>
#include <KivBase/NoCopy.h>
#include <KivBase/ReferenceCounted.h>
#include <KivBase/ReturnPtr.h>
#include <KivBase/ReturnPtrI.h>
#include <KivBase/ReturnWString.h>
#include <KivBase/Utf.h>
#include <KivBase/WString.h>
#include <KivCOMShared/BlockReadStream.h>
#include <KivCOMShared/BlockWriteStream.h>
#include <KivCOMShared/COrvReadArchive.h>
#include <KivCOMShared/COrvSizeArchive.h>
#include <KivCOMShared/COrvWriteArchive.h>
#include <KivCOMShared/Variant.h>
#include <KivGenerics/Boolean.h>
#include <KivGenerics/Children.h>
#include <KivGenerics/Composite.h>
#include <KivGenerics/Double.h>
#include <KivGenerics/DoubleSet.h>
#include <KivGenerics/Exception.h>
#include <KivGenerics/Export.h>
#include <KivGenerics/Forward.h>
#include <KivGenerics/GlobalID.h>
#include <KivGenerics/IdSet.h>
#include <KivGenerics/Initializer.h>
#include <KivGenerics/Integer.h>
#include <KivGenerics/Integer64.h>
#include <KivGenerics/IntegerSet.h>
#include <KivGenerics/IterateFlags.h>
#include <KivGenerics/Iterator.h>
#include <KivGenerics/Map.h>
#include <KivGenerics/Node.h>
#include <KivGenerics/NodeCast.h>
#include <KivGenerics/NodeType.h>
#include <KivGenerics/ObjectType.h>
#include <KivGenerics/ResultCode.h>
#include <KivGenerics/SemanticTag.h>
#include <KivGenerics/String.h>
#include <KivGenerics/StringSet.h>
#include <KivGenerics/Temporality.h>
#include <KivGenerics/ToText.h>
#include <KivGenerics/Tree.h>
#include <KivGenerics/Vector.h>
#include <KivGenerics/VisitCode.h>
#include <KivGenerics/Visitor.h>
#include <KivGenerics/VisitorNode.h>
#include <KivLog/Initializer.h>
#include <KivLog/Observer.h>
#include <KivLog/Router.h>
#include <KivLogRouter/Initializer.h>
#include <KivLogRouter/ResourceBundle.h>
#include <KivResource/ResourceBundle.h>
#include <KivStorage/Export.h>
#include <KivStorage/FileReadStream.h>
#include <KivStorage/FileWriteStream.h>
#include <KivStorage/Interfaces.h>
#include <KivStorage/LoadTree.h>
#include <KivStorage/MemoryReadStream.h>
#include <KivStorage/MemoryWriteStream.h>
#include <KivStorage/Options.h>
#include <KivStorage/ReadStream.h>
#include <KivStorage/Result.h>
#include <KivStorage/SaveTree.h>
#include <KivStorage/SizeArchive.h>
#include <KivStorage/SizeTotals.h>
#include <KivStorage/UnsavedParts.h>
#include <KivStorage/WriteStream.h>
#include <KivSynch/AtomicLong.h>
#include <KivSynch/LockStackCategory.h>
#include <KivSynch/Sleep.h>
// clang-format on

#undef min
#undef max
#include <gtest/gtest.h>

#include "host/SystemHeaderCases.h"

namespace {

TEST(SystemHeaderFirstTest, MessagesGiveTheirTextUnderTheSystemsNamesToo) {
    CheckMessagesGiveTheirTextUnderTheSystemsNamesToo();
}

TEST(SystemHeaderFirstTest, ExceptionsGiveTheirText) {
    CheckExceptionsGiveTheirText();
}

TEST(SystemHeaderFirstTest, TreesAreBuiltSavedAndLoaded) {
    CheckTreesAreBuiltSavedAndLoaded();
}

}  // namespace
