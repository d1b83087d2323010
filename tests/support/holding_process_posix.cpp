#ifndef _WIN32

#include "support/holding_process.h"

#include "platform/posix/file_descriptor.h"

#include <array>
#include <csignal>
#include <filesystem>
#include <stdexcept>
#include <utility>

#include <fcntl.h>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

namespace pmx::test {

namespace {

using posix::FileDescriptor;

struct Pipe {
    FileDescriptor Reader;
    FileDescriptor Writer;
};

Pipe MakePipe() {
    std::array<int, 2> ends{};
    if (pipe2(ends.data(), O_CLOEXEC) != 0) {
        throw std::runtime_error("no pipe");
    }
    return {FileDescriptor(ends[0]), FileDescriptor(ends[1])};
}

/// The program lies beside the test program.
std::string ProgramPath(const std::string& program) {
    return std::filesystem::read_symlink("/proc/self/exe").parent_path() / program;
}

/// Which of our files become the standard files of a program that is started.
class StandardFiles {
public:
    StandardFiles(const FileDescriptor& input, const FileDescriptor& output) {
        posix_spawn_file_actions_init(&Actions);
        posix_spawn_file_actions_adddup2(&Actions, input.Get(), STDIN_FILENO);
        posix_spawn_file_actions_adddup2(&Actions, output.Get(), STDOUT_FILENO);
    }
    ~StandardFiles() { posix_spawn_file_actions_destroy(&Actions); }
    StandardFiles(const StandardFiles&) = delete;
    StandardFiles& operator=(const StandardFiles&) = delete;

    const posix_spawn_file_actions_t* Get() const { return &Actions; }

private:
    posix_spawn_file_actions_t Actions{};
};

} // namespace

class HoldingProcess::Child {
public:
    Child(const std::string& program, const std::string& path) {
        Pipe input = MakePipe();
        Pipe output = MakePipe();
        Start(ProgramPath(program), path, StandardFiles(input.Reader, output.Writer));
        KeepAlive = std::move(input.Writer);
        output.Writer = FileDescriptor();
        char first = 0;
        if (read(output.Reader.Get(), &first, 1) != 1) {
            Wait();
            throw std::runtime_error("the other program does not do its work");
        }
    }

    ~Child() {
        KeepAlive = FileDescriptor();
        Wait();
    }
    void Kill() const { kill(Process, SIGKILL); }
    Child(const Child&) = delete;
    Child& operator=(const Child&) = delete;

private:
    void Start(std::string program, std::string path, const StandardFiles& files) {
        std::array<char*, 3> arguments = {program.data(), path.data(), nullptr};
        if (posix_spawn(&Process, program.c_str(), files.Get(), nullptr, arguments.data(), environ) != 0) {
            throw std::runtime_error("cannot start " + program);
        }
    }

    void Wait() const {
        int status = 0;
        waitpid(Process, &status, 0);
    }

    pid_t Process = 0;
    FileDescriptor KeepAlive;
};

HoldingProcess::HoldingProcess(const std::string& path) : HoldingProcess("pmx_hold_file", path) {}

HoldingProcess::HoldingProcess(const std::string& program, const std::string& path)
    : Process(std::make_unique<Child>(program, path)) {}

HoldingProcess::~HoldingProcess() = default;

void HoldingProcess::Kill() {
    Process->Kill();
    Process.reset();
}

void HoldingProcess::Release() {
    Process.reset();
}

} // namespace pmx::test

#endif
