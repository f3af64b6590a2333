#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include <KivStorage/FileScanner.h>

#include "kivtree/Context.h"

namespace KivTree {

/// The saved bytes of a tree that was named on the command line.
struct ScanInput {
    std::vector<char> bytes;  ///< of standard input
    std::vector<std::uint8_t> saved;  ///< of a tree in another form, as a save would write it
    KivInspect::Form form = KivInspect::Form::Binary;
    std::unique_ptr<KivStorage::FileScanner> scanner;

    std::string_view GetBytes() const noexcept { return {bytes.data(), bytes.size()}; }
};

/// Opens a file in the binary form to be read in pieces. A tree in another form is loaded and saved to memory, its transient
/// nodes, too. Throws Trouble.
ScanInput OpenScan(const Context& context, const std::string& file);
/// The same for the binary form alone.
ScanInput OpenBinaryScan(const Context& context, const std::string& file);

}  // namespace KivTree
