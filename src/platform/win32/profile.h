#pragma once

#include "platform/profile.h"

#include <cstddef>
#include <string>
#include <string_view>

namespace pmx::win32 {

/// Where buffers stop to grow: no text of a file that anybody edits is longer.
inline constexpr std::size_t LargestBuffer = std::size_t{1} << 30U;

/// The platform's own profile functions.
///
/// Of texts of more than 32766 characters Wine's narrow functions make rubbish. Such values are written with
/// the wide function, which takes any length; sections and keys of that length are there for nobody and
/// cannot be written.
class WindowsProfile final : public Profile {
public:
    /// A section whose list of lines needs a larger buffer is read key by key.
    explicit WindowsProfile(std::size_t largestSectionBuffer = LargestBuffer)
        : LargestSectionBuffer(largestSectionBuffer) {}

    bool VisitSection(const std::string& path, std::string_view section, const Visitor& visit) override;
    std::string ReadString(const std::string& path, std::string_view section, std::string_view key,
                           std::string_view defaultValue) override;
    std::int32_t ReadInt(const std::string& path, std::string_view section, std::string_view key,
                         std::int32_t defaultValue) override;
    bool WriteString(const std::string& path, std::string_view section, std::optional<std::string_view> key,
                     std::optional<std::string_view> value) override;
    FileError ReplaceSection(const std::string& source, const std::string& target, std::string_view section,
                             const ProfileEntries& entries) override;

private:
    bool ReplaceInPlace(const std::string& path, const std::string& section, const ProfileEntries& entries);
    bool WriteKeys(const std::string& path, const std::string& section, const ProfileEntries& entries,
                   std::size_t count);

    std::size_t LargestSectionBuffer;
};

} // namespace pmx::win32
