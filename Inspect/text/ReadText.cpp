#include <KivInspect/TextForm.h>

#include <KivGenerics/Boolean.h>
#include <KivGenerics/Double.h>
#include <KivGenerics/DoubleSet.h>
#include <KivGenerics/GlobalID.h>
#include <KivGenerics/IdSet.h>
#include <KivGenerics/Integer.h>
#include <KivGenerics/Integer64.h>
#include <KivGenerics/IntegerSet.h>
#include <KivGenerics/String.h>
#include <KivGenerics/StringSet.h>

#include "files/Failure.h"
#include "files/LimitedSource.h"
#include "text/LineReader.h"
#include "text/Scan.h"
#include "tree/TreeBuilder.h"

namespace KivInspect {
namespace {

using namespace KivGenerics;

/// The elements of a set, each taken by `take`.
template <class Set, class Take>
void ReadSet(Scan& scan, Node* node, Take take) {
    typename Set::Elements elements;
    scan.Expect("{");
    while (!scan.Take("}")) {
        if (!elements.empty()) {
            scan.Expect(", ");
        }
        elements.insert(elements.end(), take());
    }
    static_cast<Set*>(node)->Set(elements);
}

void ReadValue(Scan& scan, Node* node, std::size_t textLimit) {
    switch (node->GetType()) {
        case NodeTypeInteger: static_cast<Integer*>(node)->Set(scan.TakeInteger()); break;
        case NodeTypeGlobalID: static_cast<GlobalID*>(node)->Set(scan.TakeGuid()); break;
        case NodeTypeString: static_cast<String*>(node)->Set(scan.TakeQuoted(textLimit)); break;
        case NodeTypeDouble: static_cast<Double*>(node)->Set(scan.TakeDouble()); break;
        case NodeTypeBoolean: static_cast<Boolean*>(node)->Set(scan.TakeBoolean()); break;
        case NodeTypeVector: break;
        case NodeTypeMap: break;
        case NodeTypeIntegerSet: ReadSet<IntegerSet>(scan, node, [&] { return scan.TakeInteger(); }); break;
        case NodeTypeIdSet: ReadSet<IdSet>(scan, node, [&] { return scan.TakeGuid(); }); break;
        case NodeTypeStringSet: ReadSet<StringSet>(scan, node, [&] { return scan.TakeQuoted(textLimit); }); break;
        case NodeTypeDoubleSet: ReadSet<DoubleSet>(scan, node, [&] { return scan.TakeDouble(); }); break;
        case NodeTypeInteger64: static_cast<Integer64*>(node)->Set(scan.TakeInteger64()); break;
    }
}

std::size_t TakeDepth(Scan& scan) {
    std::size_t depth = 0;
    while (scan.Take("  ")) {
        ++depth;
    }
    return depth;
}

/// What stands between the indentation and the value.
NewNode TakeHead(Scan& scan) {
    NewNode node;
    if ('0' <= scan.Peek() && scan.Peek() <= '9') {
        node.index = scan.TakeInteger();
        scan.Expect(": ");
    } else {
        scan.Take("- ");
    }
    const std::string_view kind = scan.TakeWord();
    const auto found = FindKind(kind);
    if (!found) {
        throw Failure(InspectMalformed, "\"" + std::string(kind) + "\" is no kind of node.");
    }
    node.kind = *found;
    if (scan.Take(" #")) {
        node.tag = scan.TakeInteger();
    }
    return node;
}

/// A temporality, where one stands: a word that is none of the values.
void TakeTemporality(Scan& scan, NewNode& node) {
    Scan ahead = scan;
    if (!ahead.Take(" ")) {
        return;
    }
    if (ahead.Take("temporality=")) {
        node.temporality = ahead.TakeInteger();
    } else {
        node.temporality = FindTemporality(ahead.TakeWord());
    }
    if (node.temporality) {
        scan = ahead;
    }
}

void ReadLine(std::string_view line, TreeBuilder& builder) {
    Scan scan(line);
    const std::size_t depth = TakeDepth(scan);
    const bool isElement = scan.Peek() == '-';
    NewNode head = TakeHead(scan);
    TakeTemporality(scan, head);
    Node* const node = builder.Add(depth, head);
    const Composite* const parent = node->GetParent();
    if (parent != nullptr ? isElement != (parent->GetType() == NodeTypeVector) : isElement) {
        throw Failure(InspectMalformed, "a \"-\" stands before the elements of vectors, and before them alone.");
    }
    if (!IsCompositeType(head.kind)) {
        scan.Expect(" ");
        ReadValue(scan, node, builder.GetTextLimit());
    }
    if (!scan.AtEnd()) {
        throw Failure(InspectMalformed, "column " + std::to_string(scan.GetColumn()) + ": the line should end here.");
    }
}

void ReadLines(LineReader& lines, TreeBuilder& builder) {
    const std::string begins = TextFormBegins;
    if (!lines.Next() || lines.GetLine().substr(0, begins.size()) != begins) {
        throw Failure(InspectMalformed,
                      "the first line should be \"" + begins + "1\". Check that it is the right file.");
    }
    if (lines.GetLine().substr(begins.size()) != "1") {
        throw Failure(InspectMalformed, "the version of the text form is not known. Read it with a newer release.");
    }
    while (lines.Next()) {
        ReadLine(lines.GetLine(), builder);
    }
}

}  // namespace

KivStorage::LoadResult ReadText(Source& source, const std::string& place, const KivStorage::LoadOptions& options) {
    KivStorage::LoadResult loaded;
    LimitedSource limited(source, options.limits.totalBytes);
    LineReader lines(limited);
    loaded.result = Guarded([&] {
        TreeBuilder builder(options);
        try {
            ReadLines(lines, builder);
        } catch (const Failure& failure) {
            throw Failure(failure.GetCode(),
                          place + ", line " + std::to_string(lines.GetNumber()) + ": " + failure.what());
        }
        loaded.tree = builder.Take();
    });
    return loaded;
}

}  // namespace KivInspect
