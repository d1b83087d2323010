#ifdef _WIN32

#include "support/unix_shell.h"

#include <chrono>
#include <stdexcept>

#include <windows.h>

namespace pmx::test {

namespace {

constexpr std::chrono::seconds Patience{20};

} // namespace

/// Wine starts the system's programs too, but tells nothing about them, so the script itself tells its end.
void RunShell(const TempFolder& folder, const std::string& script) {
    const std::string marker = "shell-is-done";
    std::string command = "sh -c \"( " + script + " ) && touch " + marker + '"';
    STARTUPINFOA startup{};
    startup.cb = sizeof startup;
    PROCESS_INFORMATION information{};
    if (!CreateProcessA("Z:\\bin\\sh", command.data(), nullptr, nullptr, FALSE, 0, nullptr,
                        folder.Path().c_str(), &startup, &information)) {
        throw std::runtime_error("there is no shell");
    }
    const auto deadline = std::chrono::steady_clock::now() + Patience;
    while (!folder.Exists(marker)) {
        if (std::chrono::steady_clock::now() > deadline) {
            throw std::runtime_error("the shell cannot run " + script);
        }
        MsgWaitForMultipleObjects(0, nullptr, FALSE, 5, 0); // lets others run between two looks
    }
    folder.Remove(marker);
}

} // namespace pmx::test

#endif
