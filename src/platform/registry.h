#pragma once

#include <optional>
#include <string>

namespace pmx {

/// Reading of the system's registry.
class Registry {
public:
    static constexpr unsigned ValueSize = 260; ///< bytes of the longest value, its terminating zero included

    virtual ~Registry() = default;

    /// The default value of a key under the classes root, as a string in the system's code page. None when
    /// the key or the value is missing, is no string or does not fit in ValueSize.
    virtual std::optional<std::string> ClassesRootDefault(const std::string& key) = 0;

protected:
    Registry() = default;
    Registry(const Registry&) = default;
    Registry& operator=(const Registry&) = default;
};

/// The system's registry; without one, every key is missing. Lives as long as the process.
Registry& SystemRegistry();

} // namespace pmx
