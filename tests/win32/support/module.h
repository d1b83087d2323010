#pragma once

#include <memory>
#include <type_traits>

#include <windows.h>

namespace pmx::test {

struct ModuleFreer {
    void operator()(HMODULE module) const { FreeLibrary(module); }
};

/// Owns a reference to a library that is loaded.
using Module = std::unique_ptr<std::remove_pointer_t<HMODULE>, ModuleFreer>;

} // namespace pmx::test
