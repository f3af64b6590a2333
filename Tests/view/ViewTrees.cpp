// Writes the trees that the test of the page in a browser looks at: viewTrees FOLDER.

#include <cstdio>
#include <filesystem>
#include <string>

#include <KivBase/Utf.h>
#include <KivGenerics/Boolean.h>
#include <KivGenerics/Double.h>
#include <KivGenerics/Integer.h>
#include <KivGenerics/IntegerSet.h>
#include <KivGenerics/Map.h>
#include <KivGenerics/String.h>
#include <KivGenerics/Tree.h>
#include <KivGenerics/Vector.h>
#include <KivStorage/SaveTree.h>

namespace {

using namespace KivGenerics;

constexpr SemanticTag TagPeople = static_cast<SemanticTag>(4162);
constexpr SemanticTag TagPerson = static_cast<SemanticTag>(28675);
constexpr SemanticTag TagGuest = static_cast<SemanticTag>(4107);

template <class T>
T* New(Composite* parent, int index, SemanticTag tag = SemanticTagNone) {
    return static_cast<T*>(parent->NewNode(index, T::StaticType, false, tag));
}

/// Six nodes.
void AddPerson(Map* people, int i, bool isOther) {
    auto* const person = New<Map>(people, i, i % 3 == 0 ? TagGuest : TagPerson);
    const std::string name = (i % 5 == 0 ? "Zo\xC3\xAB \"the\" " : "Person ") + std::to_string(i);
    New<String>(person, 0)->Set(KivBase::FromUtf8(name));
    New<Integer>(person, 1)->Set(isOther && i % 50 == 7 ? -i : 3 * i);
    New<Double>(person, 2)->Set(i / 8.0);
    New<Boolean>(person, 3)->Set(i % 2 == 0);
    auto* const visits = New<Integer>(person, 4);
    visits->Set(i % 7);
    visits->SetTemporality(TemporalityTransient);
}

/// A tree of about six nodes for each person. The other one lacks every 100th person, has other numbers, and has a part that
/// the first one lacks.
KivBase::ReturnPtrI<Tree> MakeTree(int persons, bool isOther) {
    auto tree = CreateGenericTree(static_cast<EnumOrvObjectType>(55));
    auto* const root = static_cast<Map*>(tree->NewRoot(NodeTypeMap));
    auto* const people = New<Map>(root, 0, TagPeople);
    for (int i = 0; i < persons; ++i) {
        if (!isOther || i % 100 != 99) {
            AddPerson(people, i, isOther);
        }
    }
    auto* const numbers = New<Vector>(root, 1);
    for (int i = 0; i < 20; ++i) {
        static_cast<Integer*>(numbers->Add(NodeTypeInteger))->Set(i * i);
    }
    auto* const rest = New<Map>(root, 2);
    auto* const primes = New<IntegerSet>(rest, 0);
    for (const int prime : {2, 3, 5, 7, 11}) {
        primes->Add(prime);
    }
    if (isOther) {
        New<String>(rest, 1)->Set(u"only here");
    }
    return tree;
}

bool Write(const std::filesystem::path& file, int persons, bool isOther) {
    const auto tree = MakeTree(persons, isOther);
    KivStorage::SaveOptions options;
    options.withTransient = true;
    const KivStorage::Result saved = KivStorage::SaveTree(tree.Get(), file, options);
    if (!saved.Ok()) {
        std::fprintf(stderr, "%s\n", saved.sentence.c_str());
    }
    return saved.Ok();
}

}  // namespace

int main(int argc, char** argv) {
    const std::filesystem::path folder = argc > 1 ? argv[1] : ".";
    const bool written = Write(folder / "small.kiv", 300, false) && Write(folder / "other.kiv", 300, true) &&
                         Write(folder / "million.kiv", 170000, false);
    return written ? 0 : 1;
}
