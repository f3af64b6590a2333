#include "kivtree/ProgressBar.h"

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <utility>

#include "kivtree/system/System.h"

namespace KivTree {
namespace {

constexpr double Mega = 1e6;
constexpr auto Patience = std::chrono::seconds(1);
constexpr auto Pause = std::chrono::milliseconds(100);
constexpr const char* ClearLine = "\r\x1b[K";

std::string Formatted(const char* format, double value) {
    char text[64];
    std::snprintf(text, sizeof text, format, value);
    return text;
}

std::string TimeLeft(double seconds) {
    const long whole = std::lround(seconds);
    char text[64];
    std::snprintf(text, sizeof text, "%ld:%02ld left", whole / 60, whole % 60);
    return text;
}

}  // namespace

std::string ProgressLine(const std::string& what, std::uint64_t done, std::uint64_t total, double seconds, int width) {
    const double bytes = static_cast<double>(done);
    const double rate = seconds > 0 ? bytes / seconds : 0;
    std::string line = what + " " + Formatted("%.1f", bytes / Mega);
    if (total > 0) {
        line += Formatted(" of %.1f", static_cast<double>(total) / Mega);
    }
    line += Formatted(" MB, %.0f MB/s", rate / Mega);
    if (total > done && rate > 0) {
        line += ", " + TimeLeft(static_cast<double>(total - done) / rate);
    }
    const auto room = static_cast<std::size_t>((std::max)(width - 1, 0));
    constexpr std::size_t most = 30;
    if (total > 0 && line.size() + most + 3 <= room) {
        const std::size_t full =
            static_cast<std::size_t>(static_cast<double>(most) * (std::min)(1.0, bytes / static_cast<double>(total)));
        line = "[" + std::string(full, '#') + std::string(most - full, ' ') + "] " + line;
    }
    return line.substr(0, room);
}

ProgressBar::ProgressBar(bool wanted, std::string what)
    : what_(std::move(what)), wanted_(wanted && IsErrorTerminal()) {}

ProgressBar::~ProgressBar() {
    if (shown_) {
        std::fputs(ClearLine, stderr);
    }
}

KivInspect::Progress ProgressBar::OfBytes() {
    if (!wanted_) {
        return {};
    }
    return [this](std::uint64_t done, std::uint64_t total) { Show(done, total); };
}

KivInspect::Progress ProgressBar::OfNodes(std::function<std::uint64_t()> written) {
    if (!wanted_) {
        return {};
    }
    return [this, written = std::move(written)](std::uint64_t done, std::uint64_t total) {
        const std::uint64_t bytes = written();
        const double share = static_cast<double>(total) / static_cast<double>(done);
        Show(bytes, static_cast<std::uint64_t>(static_cast<double>(bytes) * share));
    };
}

void ProgressBar::Show(std::uint64_t done, std::uint64_t total) {
    if (!wanted_) {
        return;
    }
    const Clock::time_point now = Clock::now();
    if (now - begin_ < Patience || now - last_ < Pause) {
        return;
    }
    last_ = now;
    shown_ = true;
    const double seconds = std::chrono::duration<double>(now - begin_).count();
    std::fprintf(stderr, "%s%s", ClearLine, ProgressLine(what_, done, total, seconds, GetTerminalWidth()).c_str());
    std::fflush(stderr);
}

}  // namespace KivTree
