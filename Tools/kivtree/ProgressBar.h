#pragma once

#include <chrono>
#include <cstdint>
#include <functional>
#include <string>

#include <KivInspect/FileSource.h>

namespace KivTree {

/// A line on a terminal that tells how far a long step is: bytes, rate and time left. It appears after a second and goes with
/// the object. Where standard error is no terminal, there is none. Results must not be printed meanwhile.
class ProgressBar {
public:
    /// `wanted` is what the user said; `what` names the step.
    ProgressBar(bool wanted, std::string what);
    ~ProgressBar();
    ProgressBar(const ProgressBar&) = delete;
    ProgressBar& operator=(const ProgressBar&) = delete;

    /// How many bytes there have been, and how many there will be, 0 when nobody knows.
    void Show(std::uint64_t done, std::uint64_t total);
    /// What shows the bytes that are told of; empty when there is no bar, so that nothing is counted for it.
    KivInspect::Progress OfBytes();
    /// The same for a step that tells of nodes while it writes: `written` answers the bytes so far, those to come are taken to be
    /// in proportion to the nodes.
    KivInspect::Progress OfNodes(std::function<std::uint64_t()> written);

private:
    using Clock = std::chrono::steady_clock;

    std::string what_;
    bool wanted_;
    bool shown_ = false;
    Clock::time_point begin_ = Clock::now();
    Clock::time_point last_ = begin_;
};

/// The line for so many bytes in so many seconds, of at most `width` characters.
std::string ProgressLine(const std::string& what, std::uint64_t done, std::uint64_t total, double seconds, int width);

}  // namespace KivTree
