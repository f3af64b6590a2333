#pragma once

#include <string>
#include <utility>

#include <KivBase/ReturnPtrI.h>
#include <KivBase/Utf.h>
#include <KivGenerics/Exception.h>
#include <KivGenerics/Tree.h>

namespace KivTests {

/// An empty tree on a forest of its own.
inline KivBase::ReturnPtrI<KivGenerics::Tree> NewTree() {
    return KivGenerics::CreateGenericTree(KivGenerics::EnumOrvObjectType(0));
}

/// The text, in UTF-8, of the exception of the library that the call throws; "" when it throws none.
template <class F>
std::string TextOf(F&& call) {
    try {
        std::forward<F>(call)();
    } catch (const KivGenerics::Exception& exception) {
        return KivBase::ToUtf8(exception.GetMessage());
    }
    return "";
}

/// How far the call moves the tree's change count, whether it throws an exception of the library or not.
template <class F>
int ChangesOf(KivGenerics::Tree& tree, F&& call) {
    const int before = tree.GetChangeCount();
    try {
        std::forward<F>(call)();
    } catch (const KivGenerics::Exception&) {
        // The count is what is asked for; TextOf tells the text.
    }
    return tree.GetChangeCount() - before;
}

}  // namespace KivTests
