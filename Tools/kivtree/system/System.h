#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace KivTree {

// What differs by system, seen from the tool.

/// The words of the command line in UTF-8, the program's own name left out.
std::vector<std::string> GetArguments(int argc, char** argv);
/// Standard streams carry bytes, no text with line ends of the system's own.
void PrepareStandardStreams();
bool IsOutputTerminal();
bool IsErrorTerminal();
/// Columns of the terminal that standard error is; 80 where nobody knows.
int GetTerminalWidth();
/// Writes all of it. Returns what went wrong, in the system's words, or nothing. Ends the program when the reader has gone.
std::string WriteStandardOutput(std::string_view bytes);
/// Reads up to `size` bytes into `bytes`; 0 at the end, -1 for a failure.
long ReadStandardInputBytes(char* bytes, std::size_t size);

}  // namespace KivTree
