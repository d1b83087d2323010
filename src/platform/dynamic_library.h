#pragma once

#include <memory>
#include <string>

namespace pmx {

/// A loaded library. Destroying it releases the library.
class DynamicLibrary {
public:
    virtual ~DynamicLibrary() = default;
    DynamicLibrary(const DynamicLibrary&) = delete;
    DynamicLibrary& operator=(const DynamicLibrary&) = delete;

    using Function = void (*)();

    /// The exported function of that undecorated name, to be cast to its true type; null when there is none.
    /// Valid as long as the library is loaded.
    virtual Function Find(const char* name) const = 0;

protected:
    DynamicLibrary() = default;
};

/// Loading of libraries at run time.
class DynamicLibraries {
public:
    virtual ~DynamicLibraries() = default;

    /// Loads the host's library of that file name, in the system's code page, from the folder of this library,
    /// else from the program's, and from nowhere else: not from the current folder, which may be anybody's.
    /// What it needs itself is looked for beside it, beside the program, and in the system. Null when it
    /// cannot be loaded; the platform shows no message of its own.
    virtual std::unique_ptr<DynamicLibrary> LoadHostLibrary(const std::string& fileName) = 0;

protected:
    DynamicLibraries() = default;
    DynamicLibraries(const DynamicLibraries&) = default;
    DynamicLibraries& operator=(const DynamicLibraries&) = default;
};

/// The system's loader. Lives as long as the process.
DynamicLibraries& SystemDynamicLibraries();

} // namespace pmx
