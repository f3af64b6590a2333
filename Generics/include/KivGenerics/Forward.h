#pragma once

namespace KivCOMShared {
class BlockReadStream;
class BlockWriteStream;
class COrvReadArchive;
class COrvSizeArchive;
class COrvWriteArchive;
}  // namespace KivCOMShared

namespace KivGenerics {

class ArchiveDecoder;
class Boolean;
class ChangeGuard;
class Composite;
class Double;
class DoubleSet;
class ForestImpl;
class GlobalID;
class IdSet;
class Integer;
class Integer64;
class IntegerSet;
class Iterator;
class Map;
class Node;
class NodeSource;
class String;
class StringSet;
class Tree;
class TreeImpl;
class Vector;
class Visitor;
struct NodeAccess;

template <int N>
class MapImpl;

}  // namespace KivGenerics
