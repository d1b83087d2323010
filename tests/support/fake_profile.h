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

/// Tells nothing more about a planned failure than that it happens.
struct ProfileFailure {};

/// Real profile files, some of whose operations fail as planned, without having done anything: a read as if
/// the file could not be read, a write with false.
class FakeProfile : public Profile {
public:
    /// `profile` must outlive this object.
    explicit FakeProfile(Profile& profile = SystemProfile()) : Inner(profile) {}

    FailurePlan<ProfileOperation, ProfileFailure> Plan;

    void VisitSection(const std::string& path, std::string_view section, const Visitor& visit) override {
        if (!Plan.Next(ProfileOperation::VisitSection)) {
            Inner.VisitSection(path, section, visit);
        }
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

    bool ReplaceSection(const std::string& path, std::string_view section,
                        const std::vector<ProfileEntry>& entries) override {
        return !Plan.Next(ProfileOperation::ReplaceSection) && Inner.ReplaceSection(path, section, entries);
    }

private:
    Profile& Inner;
};

} // namespace pmx::test
