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
    IsSame,
    Read,
    TryOpen,
    CreateNew,
    WriteNew,
    Overwrite,
    Flush,
    Replace,
    Rename,
    Remove,
    Lock
};

/// Real files, some of whose operations fail as planned, without having done anything.
///
/// IsFolder and IsSame that fail say no; Exists and IsReadOnly that fail say yes.
class FakeFiles : public Files {
public:
    /// `files` must outlive this object.
    explicit FakeFiles(Files& files = SystemFiles()) : Inner(files) {}

    FailurePlan<FileOperation, FileError> Plan;

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

    bool IsSame(const std::string& left, const std::string& right) override {
        return !Plan.Next(FileOperation::IsSame) && Inner.IsSame(left, right);
    }

    FileError Read(const std::string& path, std::string& content) override {
        const auto failure = Plan.Next(FileOperation::Read);
        return failure ? *failure : Inner.Read(path, content);
    }

    FileError TryOpen(const std::string& path) override {
        const auto failure = Plan.Next(FileOperation::TryOpen);
        return failure ? *failure : Inner.TryOpen(path);
    }

    FileError CreateNew(const std::string& path) override {
        const auto failure = Plan.Next(FileOperation::CreateNew);
        return failure ? *failure : Inner.CreateNew(path);
    }

    FileError WriteNew(const std::string& path, const std::string& content) override {
        const auto failure = Plan.Next(FileOperation::WriteNew);
        return failure ? *failure : Inner.WriteNew(path, content);
    }

    FileError Overwrite(const std::string& path, const std::string& content) override {
        const auto failure = Plan.Next(FileOperation::Overwrite);
        return failure ? *failure : Inner.Overwrite(path, content);
    }

    FileError Flush(const std::string& path) override {
        const auto failure = Plan.Next(FileOperation::Flush);
        return failure ? *failure : Inner.Flush(path);
    }

    FileError Replace(const std::string& source, const std::string& target) override {
        const auto failure = Plan.Next(FileOperation::Replace);
        return failure ? *failure : Inner.Replace(source, target);
    }

    FileError Rename(const std::string& source, const std::string& target) override {
        const auto failure = Plan.Next(FileOperation::Rename);
        return failure ? *failure : Inner.Rename(source, target);
    }

    FileError Remove(const std::string& path) override {
        const auto failure = Plan.Next(FileOperation::Remove);
        return failure ? *failure : Inner.Remove(path);
    }

    LockResult Lock(const std::string& path) override {
        if (const auto failure = Plan.Next(FileOperation::Lock)) {
            return {nullptr, *failure};
        }
        return Inner.Lock(path);
    }

private:
    Files& Inner;
};

} // namespace pmx::test
