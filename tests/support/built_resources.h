#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <string_view>

namespace pmx::test {

enum class Language { Japanese, English };
enum class ResourceKind : std::uint16_t { Bitmap = 2, Dialog = 5, Version = 16, Manifest = 24 };

/// The resources that were built for a language: on Windows those in the library itself, natively those in
/// the compiled resource file that the library is linked with.
class BuiltResources {
public:
    virtual ~BuiltResources() = default;
    BuiltResources(const BuiltResources&) = delete;
    BuiltResources& operator=(const BuiltResources&) = delete;

    /// Loaded at the first use and kept as long as the process. Throws std::runtime_error when they are
    /// missing.
    static const BuiltResources& Of(Language language);

    /// None when there is no such string.
    virtual std::optional<std::u16string> StringOf(int id) const = 0;

    /// Empty when there is no such resource.
    virtual std::span<const std::byte> Find(ResourceKind kind, int id) const = 0;

protected:
    BuiltResources() = default;
};

/// True when the system's Japanese code page has every character of the text, exactly.
bool HasShiftJisCode(std::u16string_view text);

} // namespace pmx::test
