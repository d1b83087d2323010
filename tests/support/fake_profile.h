#pragma once

#include "platform/profile.h"
#include "support/failure_plan.h"

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace pmx::test {

enum class ProfileOperation { VisitSection, ReadString, ReadInt, WriteString, ReplaceSection };

/// How a planned failure of ReplaceSection ends; of the other operations nothing more is told than that they
/// fail.
struct ProfileFailure {
    FileError Error = FileError::Other;
};

/// Real profile files, some of whose operations fail as planned, without having done anything: a read as if
/// the file could not be read, a visit and a write with false.
class FakeProfile : public Profile {
public:
    /// `profile` must outlive this object.
    explicit FakeProfile(Profile& profile = SystemProfile()) : Inner(profile) {}

    FailurePlan<ProfileOperation, ProfileFailure> Plan;

    bool VisitSection(const std::string& path, std::string_view section, const Visitor& visit) override {
        return !Plan.Next(ProfileOperation::VisitSection) && Inner.VisitSection(path, section, visit);
    }

    std::string ReadString(const std::string& path, std::string_view section, std::string_view key,
                           std::string_view defaultValue) override {
        const bool fails = Plan.Next(ProfileOperation::ReadString).has_value();
        return fails ? std::string(defaultValue) : Inner.ReadString(path, section, key, defaultValue);
    }

    std::int32_t ReadInt(const std::string& path, std::string_view section, std::string_view key,
                         std::int32_t defaultValue) override {
        const bool fails = Plan.Next(ProfileOperation::ReadInt).has_value();
        return fails ? defaultValue : Inner.ReadInt(path, section, key, defaultValue);
    }

    bool WriteString(const std::string& path, std::string_view section, std::optional<std::string_view> key,
                     std::optional<std::string_view> value) override {
        return !Plan.Next(ProfileOperation::WriteString) && Inner.WriteString(path, section, key, value);
    }

    FileError ReplaceSection(const std::string& source, const std::string& target, std::string_view section,
                             const ProfileEntries& entries) override {
        const std::optional<ProfileFailure> failure = Plan.Next(ProfileOperation::ReplaceSection);
        return failure ? failure->Error : Inner.ReplaceSection(source, target, section, entries);
    }

private:
    Profile& Inner;
};

} // namespace pmx::test
