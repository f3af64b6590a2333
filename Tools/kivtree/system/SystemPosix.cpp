#include <cerrno>
#include <csignal>
#include <system_error>

#include <sys/ioctl.h>
#include <unistd.h>

#include "kivtree/system/System.h"

namespace KivTree {

std::vector<std::string> GetArguments(int argc, char** argv) {
    return argc > 0 ? std::vector<std::string>(argv + 1, argv + argc) : std::vector<std::string>();
}

void PrepareStandardStreams() {
    // A reader that goes away ends the program by the signal, whatever whoever started it had set.
    std::signal(SIGPIPE, SIG_DFL);
}

bool IsOutputTerminal() {
    return ::isatty(STDOUT_FILENO) == 1;
}

bool IsErrorTerminal() {
    return ::isatty(STDERR_FILENO) == 1;
}

int GetTerminalWidth() {
    winsize size = {};
    return ::ioctl(STDERR_FILENO, TIOCGWINSZ, &size) == 0 && size.ws_col > 0 ? size.ws_col : 80;
}

std::string WriteStandardOutput(std::string_view bytes) {
    while (!bytes.empty()) {
        const ssize_t written = ::write(STDOUT_FILENO, bytes.data(), bytes.size());
        if (written >= 0) {
            bytes.remove_prefix(static_cast<std::size_t>(written));
        } else if (errno != EINTR) {
            return std::system_category().message(errno);
        }
    }
    return {};
}

long ReadStandardInputBytes(char* bytes, std::size_t size) {
    while (true) {
        const ssize_t count = ::read(STDIN_FILENO, bytes, size);
        if (count >= 0 || errno != EINTR) {
            return static_cast<long>(count);
        }
    }
}

}  // namespace KivTree
