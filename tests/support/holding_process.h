#pragma once

#include <memory>
#include <string>

namespace pmx::test {

/// Another process that holds a file open without sharing it.
class HoldingProcess {
public:
    /// Returns when the file at `path` (code page 932) is held; throws when that fails.
    explicit HoldingProcess(const std::string& path);

    /// Releases the file.
    ~HoldingProcess();
    HoldingProcess(const HoldingProcess&) = delete;
    HoldingProcess& operator=(const HoldingProcess&) = delete;

    /// Returns when the file is free again and the process gone. Once is enough.
    void Release();

private:
    class Child;
    std::unique_ptr<Child> Process;
};

} // namespace pmx::test
