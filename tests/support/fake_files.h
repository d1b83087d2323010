#pragma once

#include "platform/files.h"
#include "support/failure_plan.h"

#include <functional>
#include <memory>
#include <string>

namespace pmx::test {

enum class FileOperation {
    Exists,
    IsFolder,
    IsReadOnly,
    Open,
    Copy,
    Remove,
    Flush,
    Replace,
    Lock,
    CreateTemporary
};

/// Real files, some of whose operations fail as planned, without having done anything.
///
/// IsFolder that fails says no; Exists and IsReadOnly that fail say yes.
class FakeFiles : public Files {
public:
    /// `files` must outlive this object.
    explicit FakeFiles(Files& files = SystemFiles()) : Inner(files) {}

    FailurePlan<FileOperation, FileError> Plan;

    /// The last error that was set, if any was.
    FileError LastError = FileError::None;

    /// What was asked of Open last.
    OpenRequest LastOpen;

    /// Called after Exists has found nothing, with the path: somebody else may take the name then.
    std::function<void(const std::string& path)> AfterAbsence;

    bool Exists(const std::string& path) override {
        if (Plan.Next(FileOperation::Exists) || Inner.Exists(path)) {
            return true;
        }
        if (AfterAbsence) {
            AfterAbsence(path);
        }
        return false;
    }

    bool IsFolder(const std::string& path) override {
        return !Plan.Next(FileOperation::IsFolder) && Inner.IsFolder(path);
    }

    bool IsReadOnly(const std::string& path) override {
        return Plan.Next(FileOperation::IsReadOnly) || Inner.IsReadOnly(path);
    }

    OpenResult Open(const OpenRequest& request) override {
        LastOpen = request;
        if (const auto failure = Plan.Next(FileOperation::Open)) {
            return {nullptr, *failure};
        }
        return Inner.Open(request);
    }

    FileError Copy(const std::string& source, const std::string& target, bool failIfExists) override {
        const auto failure = Plan.Next(FileOperation::Copy);
        return failure ? *failure : Inner.Copy(source, target, failIfExists);
    }

    FileError Remove(const std::string& path) override {
        const auto failure = Plan.Next(FileOperation::Remove);
        return failure ? *failure : Inner.Remove(path);
    }

    FileError Flush(const std::string& path) override {
        const auto failure = Plan.Next(FileOperation::Flush);
        return failure ? *failure : Inner.Flush(path);
    }

    FileError Replace(const std::string& source, const std::string& target) override {
        const auto failure = Plan.Next(FileOperation::Replace);
        return failure ? *failure : Inner.Replace(source, target);
    }

    OpenResult Lock(const std::string& path) override {
        if (const auto failure = Plan.Next(FileOperation::Lock)) {
            return {nullptr, *failure};
        }
        return Inner.Lock(path);
    }

    std::string CreateTemporary(const std::string& folder, FileError& error) override {
        if (const auto failure = Plan.Next(FileOperation::CreateTemporary)) {
            error = *failure;
            return {};
        }
        return Inner.CreateTemporary(folder, error);
    }

    void SetLastError(FileError error) override {
        LastError = error;
        Inner.SetLastError(error);
    }

private:
    Files& Inner;
};

} // namespace pmx::test
