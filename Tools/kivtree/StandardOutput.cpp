#include "kivtree/StandardOutput.h"

#include "kivtree/Context.h"
#include "kivtree/system/System.h"

namespace KivTree {

void StandardOutput::Write(std::string_view bytes) {
    constexpr std::size_t limit = 65536;
    pending_ += bytes;
    if (pending_.size() >= limit) {
        Flush();
    }
}

void StandardOutput::Flush() {
    const std::string problem = WriteStandardOutput(pending_);
    pending_.clear();
    if (!problem.empty()) {
        throw Trouble("standard output cannot be written: " + problem + ". Check where it goes.");
    }
}

}  // namespace KivTree
