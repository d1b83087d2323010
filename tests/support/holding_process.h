#pragma once

#include <memory>
#include <string>

namespace pmx::test {

/// Another process: one that holds a file open without sharing it, or any other program beside this one that
/// works on a path, says a line when it has begun, and ends when its standard input does.
class HoldingProcess {
public:
    /// Returns when the file at `path` (code page 932) is held; throws when that fails.
    explicit HoldingProcess(const std::string& path);

    /// Starts that program with that path; returns when it has said its line, throws when it ends before.
    HoldingProcess(const std::string& program, const std::string& path);

    /// Releases the file.
    ~HoldingProcess();
    HoldingProcess(const HoldingProcess&) = delete;
    HoldingProcess& operator=(const HoldingProcess&) = delete;

    /// Returns when the file is free again and the process gone. Once is enough.
    void Release();

    /// Kills the process at whatever it is doing; returns when it is gone. Once, and not after Release.
    void Kill();

private:
    class Child;
    std::unique_ptr<Child> Process;
};

/// Another process that holds the file at `path`, which others may read and write meanwhile, but not replace
/// or delete.
inline HoldingProcess HoldShared(const std::string& path) {
    return {"pmx_hold_file", "shared:" + path};
}

} // namespace pmx::test
