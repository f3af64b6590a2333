#include <string>
#include <vector>

#include <fcntl.h>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

#include "kivtree/Tool.h"

namespace ToolTest {

int Start(const std::string& program, const std::vector<std::string>& words, const std::filesystem::path& input,
          const std::filesystem::path& output, const std::filesystem::path& errors) {
    std::vector<std::string> all = {program};
    all.insert(all.end(), words.begin(), words.end());
    std::vector<char*> arguments;
    for (std::string& word : all) {
        arguments.push_back(word.data());
    }
    arguments.push_back(nullptr);
    posix_spawn_file_actions_t actions;
    ::posix_spawn_file_actions_init(&actions);
    ::posix_spawn_file_actions_addopen(&actions, STDIN_FILENO, input.c_str(), O_RDONLY, 0);
    ::posix_spawn_file_actions_addopen(&actions, STDOUT_FILENO, output.c_str(), O_WRONLY | O_CREAT | O_TRUNC, 0600);
    ::posix_spawn_file_actions_addopen(&actions, STDERR_FILENO, errors.c_str(), O_WRONLY | O_CREAT | O_TRUNC, 0600);
    pid_t process = 0;
    const int started = ::posix_spawn(&process, program.c_str(), &actions, nullptr, arguments.data(), environ);
    ::posix_spawn_file_actions_destroy(&actions);
    int status = 0;
    if (started != 0 || ::waitpid(process, &status, 0) != process) {
        return -1;
    }
    return WIFEXITED(status) ? WEXITSTATUS(status) : 128 + WTERMSIG(status);
}

}  // namespace ToolTest
