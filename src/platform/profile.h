#pragma once

#include "platform/files.h"
#include "platform/profile_entries.h"

#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <string_view>

namespace pmx {

/// Private profile (INI) files, with the meaning of the platform's profile functions. The Windows
/// implementation calls them; the posix one follows what they do under Wine with code page 932 (docs/files.md
/// names the rules).
///
/// Paths are absolute, in the system's code page. Sections and keys are found without regard to the case of A
/// to Z; of duplicates the first counts. A file that cannot be read reads as one without sections.
class Profile {
public:
    virtual ~Profile() = default;

    /// Receives one key and its value. Both views end with the call. The value is as ReadString gives it:
    /// blanks at both ends and one pair of outer quotes removed.
    using Visitor = std::function<void(std::string_view key, std::string_view value)>;

    /// Reads the file once and visits every `key=value` of the first section of that name in file order,
    /// duplicates included; comments and lines without `=` are not visited. Cost is linear in the size of the
    /// file. False when the file is there and could not be read, as far as the platform tells.
    virtual bool VisitSection(const std::string& path, std::string_view section, const Visitor& visit) = 0;

    /// The value of one key, or the default when the key is missing.
    virtual std::string ReadString(const std::string& path, std::string_view section, std::string_view key,
                                   std::string_view defaultValue) = 0;

    /// The value of one key as the platform's integer read gives it, or the default when the key is missing
    /// or empty.
    virtual std::int32_t ReadInt(const std::string& path, std::string_view section, std::string_view key,
                                 std::int32_t defaultValue) = 0;

    /// Writes one key. Without a value the key is removed, without a key the whole section. False on failure;
    /// that a disk is full Windows does not tell here.
    virtual bool WriteString(const std::string& path, std::string_view section,
                             std::optional<std::string_view> key, std::optional<std::string_view> value) = 0;

    /// Writes to `target` what `source` holds, but with the section replaced: without any section of that
    /// name, and with a new one that has these entries in order; at a cost linear in file and entries. Those
    /// are the bytes that are left by removing the section until it is gone and then writing the entries one
    /// by one with WriteString. A missing source counts as empty; `target`, which may be the source, is
    /// overwritten. On failure, also when
    /// it is incomplete for lack of room, the content of `target` is undefined; errors are those of
    /// Files::Copy.
    virtual FileError ReplaceSection(const std::string& source, const std::string& target,
                                     std::string_view section, const ProfileEntries& entries) = 0;

protected:
    Profile() = default;
    Profile(const Profile&) = default;
    Profile& operator=(const Profile&) = default;
};

/// What the platform's integer read makes of the text of a value: sign, 0x/0o/0b, leading digits, modulo
/// 2^32. Used by the implementations whose own read does not do it; public so that readers of a visited value
/// agree.
std::int32_t ProfileInteger(std::string_view value, std::int32_t defaultValue);

/// The system's profile functions. Lives as long as the process.
Profile& SystemProfile();

} // namespace pmx
