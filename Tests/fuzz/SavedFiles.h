#pragma once

#include <cstddef>
#include <vector>

#include "storage/Support.h"

/// Files of random trees of every kind, small and middle, of at least `bytes` bytes in all. The same every time.
std::vector<StorageTest::Bytes> MakeSavedFiles(std::size_t bytes);

/// A file of exactly 300 bytes.
StorageTest::Bytes MakeFileOf300Bytes();

/// A file of three blocks, about 150 KB.
StorageTest::Bytes MakeFileOfThreeBlocks();
