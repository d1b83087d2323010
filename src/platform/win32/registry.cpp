#include "platform/registry.h"

#include <array>

#include <windows.h>

namespace pmx {

namespace {

/// An open key, owned.
class RegistryKey {
public:
    explicit RegistryKey(const std::string& path) {
        if (RegOpenKeyExA(HKEY_CLASSES_ROOT, path.c_str(), 0, KEY_READ, &Key) != ERROR_SUCCESS) {
            Key = nullptr;
        }
    }
    ~RegistryKey() {
        if (Key) {
            RegCloseKey(Key);
        }
    }
    RegistryKey(const RegistryKey&) = delete;
    RegistryKey& operator=(const RegistryKey&) = delete;

    HKEY Get() const { return Key; }

private:
    HKEY Key = nullptr;
};

class WindowsRegistry final : public Registry {
public:
    std::optional<std::string> ClassesRootDefault(const std::string& key) override {
        const RegistryKey open(key);
        if (!open.Get()) {
            return std::nullopt;
        }
        std::array<char, ValueSize> value{};
        auto size = static_cast<DWORD>(value.size());
        // Expands paths with environment variables and always ends the text with a zero.
        const LSTATUS status =
            RegGetValueA(open.Get(), nullptr, nullptr, RRF_RT_REG_SZ, nullptr, value.data(), &size);
        return status == ERROR_SUCCESS ? std::optional<std::string>(value.data()) : std::nullopt;
    }
};

} // namespace

Registry& SystemRegistry() {
    static WindowsRegistry registry;
    return registry;
}

} // namespace pmx
