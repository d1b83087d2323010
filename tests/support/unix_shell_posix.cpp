#ifndef _WIN32

#include "support/unix_shell.h"

#include <array>
#include <stdexcept>

#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

namespace pmx::test {

void RunShell(const TempFolder& folder, const std::string& script) {
    std::string shell = "/bin/sh";
    std::string option = "-c";
    std::string command = "cd \"$0\" && {\n" + script + "\n}";
    std::string place = DiskPath(folder.Path()).string();
    std::array<char*, 5> arguments = {shell.data(), option.data(), command.data(), place.data(), nullptr};
    pid_t process = 0;
    int status = -1;
    if (posix_spawn(&process, shell.c_str(), nullptr, nullptr, arguments.data(), environ) != 0 ||
        waitpid(process, &status, 0) != process || status != 0) {
        throw std::runtime_error("the shell cannot run " + script);
    }
}

} // namespace pmx::test

#endif
