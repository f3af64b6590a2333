#pragma once

namespace KivGenerics {

// The word that tells Node::Iterate which nodes to show. A group of which no bit is set is completed by its default.

// Which kinds are shown: bit 1 << (NodeType - 1). Default: all. The walk passes through composites that are not shown.
inline constexpr int IterateTypeBits = 0x0000FFFF;

// When composites are shown: before their children (the default), after them, or both.
inline constexpr int IteratePreOrder = 0x00010000;
inline constexpr int IteratePostOrder = 0x00020000;

// Where the walk goes: the start node, its children, everything below them. Default: the last two.
inline constexpr int IterateSelf = 0x00100000;
inline constexpr int IterateChildren = 0x00200000;
inline constexpr int IterateDeeper = 0x00400000;

// Up to which temporality nodes are shown and composites entered. A larger one includes the smaller ones.
inline constexpr int IterateUpToPersistent = 0x01000000;
inline constexpr int IterateUpToTransient = 0x02000000;
inline constexpr int IterateUpToTemporary = 0x04000000;

// Which own temporalities are shown, one by one. Default where neither these nor the up-to bits are set: all four.
inline constexpr int IterateSeeDefault = 0x10000000;
inline constexpr int IterateSeePersistent = 0x20000000;
inline constexpr int IterateSeeTransient = 0x40000000;
inline constexpr int IterateSeeTemporary = -0x7FFFFFFF - 1;  // bit 31

}  // namespace KivGenerics
