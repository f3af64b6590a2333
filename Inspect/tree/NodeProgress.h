#pragma once

#include <cstdint>

#include <KivInspect/FileSource.h>
#include <KivInspect/Walk.h>

namespace KivInspect {

/// Tells now and then how many nodes of a tree are done. Counts them first, unless nobody wants to know.
class NodeProgress {
public:
    NodeProgress(KivGenerics::Node* root, const Progress& progress) : progress_(progress) {
        if (progress_) {
            for (Walk walk(root); walk.Next() != nullptr;) {
                ++total_;
            }
        }
    }

    NodeProgress(std::uint64_t total, const Progress& progress) : progress_(progress), total_(total) {}

    /// One more node is done.
    void Step() {
        constexpr std::uint64_t piece = 4096;
        if (progress_ && ++done_ % piece == 0) {
            progress_(done_, total_);
        }
    }

private:
    const Progress& progress_;
    std::uint64_t done_ = 0;
    std::uint64_t total_ = 0;
};

}  // namespace KivInspect
