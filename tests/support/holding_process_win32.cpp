#ifdef _WIN32

#include "support/holding_process.h"

#include <stdexcept>
#include <type_traits>
#include <utility>

#include <windows.h>

namespace pmx::test {

namespace {

struct Closer {
    void operator()(HANDLE handle) const { CloseHandle(handle); }
};
using Handle = std::unique_ptr<std::remove_pointer_t<HANDLE>, Closer>;

struct Pipe {
    Handle Reader;
    Handle Writer;
};

Pipe MakePipe() {
    HANDLE reader = nullptr;
    HANDLE writer = nullptr;
    if (!CreatePipe(&reader, &writer, nullptr, 0)) {
        throw std::runtime_error("no pipe");
    }
    return {Handle(reader), Handle(writer)};
}

void LetChildInherit(const Handle& handle) {
    SetHandleInformation(handle.get(), HANDLE_FLAG_INHERIT, HANDLE_FLAG_INHERIT);
}

/// The program lies beside the test program.
std::string CommandLine(const std::string& name, const std::string& path) {
    std::string program(MAX_PATH, '\0');
    program.resize(GetModuleFileNameA(nullptr, program.data(), MAX_PATH));
    program.resize(program.find_last_of('\\') + 1);
    return '"' + program + name + ".exe\" \"" + path + '"';
}

} // namespace

class HoldingProcess::Child {
public:
    Child(const std::string& program, const std::string& path) {
        Pipe input = MakePipe();
        Pipe output = MakePipe();
        LetChildInherit(input.Reader);
        LetChildInherit(output.Writer);
        Start(CommandLine(program, path), input.Reader.get(), output.Writer.get());
        output.Writer.reset();
        char first = 0;
        DWORD count = 0;
        if (!ReadFile(output.Reader.get(), &first, 1, &count, nullptr) || count != 1) {
            throw std::runtime_error("the other program does not do its work");
        }
        KeepAlive = std::move(input.Writer);
    }

    ~Child() {
        KeepAlive.reset();
        WaitForSingleObject(Process.get(), INFINITE);
    }
    void Kill() const { TerminateProcess(Process.get(), 1); }
    Child(const Child&) = delete;
    Child& operator=(const Child&) = delete;

private:
    void Start(std::string commandLine, HANDLE input, HANDLE output) {
        STARTUPINFOA startup{};
        startup.cb = sizeof startup;
        startup.dwFlags = STARTF_USESTDHANDLES;
        startup.hStdInput = input;
        startup.hStdOutput = output;
        PROCESS_INFORMATION information{};
        if (!CreateProcessA(nullptr, commandLine.data(), nullptr, nullptr, TRUE, CREATE_NO_WINDOW, nullptr,
                            nullptr, &startup, &information)) {
            throw std::runtime_error("cannot start " + commandLine);
        }
        CloseHandle(information.hThread);
        Process.reset(information.hProcess);
    }

    Handle Process;
    Handle KeepAlive;
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
