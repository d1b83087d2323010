#pragma once

#include "platform/files.h"
#include "support/failure_plan.h"

#include <gtest/gtest.h>

#include <functional>
#include <memory>
#include <set>
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
/// IsFolder and IsSame that fail say no; Exists and IsReadOnly that fail say yes. A file that somebody else was to write
/// and that is put in its place without being made durable fails the test.
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
        Volatile.insert(path); // before there is a file: lack of memory must leave nothing
        const FileError error = failure ? *failure : Inner.CreateNew(path);
        if (error != FileError::None) {
            Volatile.erase(path);
        }
        return error;
    }

    FileError WriteNew(const std::string& path, const std::string& content) override {
        const auto failure = Plan.Next(FileOperation::WriteNew);
        return failure ? *failure : Inner.WriteNew(path, content);
    }

    FileError Overwrite(const std::string& path, const std::string& content) override {
        const auto failure = Plan.Next(FileOperation::Overwrite);
        return failure ? *failure : Durable(path, Inner.Overwrite(path, content));
    }

    FileError Flush(const std::string& path) override {
        const auto failure = Plan.Next(FileOperation::Flush);
        return failure ? *failure : Durable(path, Inner.Flush(path));
    }

    FileError Replace(const std::string& source, const std::string& target) override {
        EXPECT_FALSE(Volatile.contains(source)) << source;
        const auto failure = Plan.Next(FileOperation::Replace);
        return failure ? *failure : Inner.Replace(source, target);
    }

    FileError Rename(const std::string& source, const std::string& target) override {
        EXPECT_FALSE(Volatile.contains(source)) << source;
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
    FileError Durable(const std::string& path, FileError error) {
        if (error == FileError::None) {
            Volatile.erase(path);
        }
        return error;
    }

    Files& Inner;
    std::set<std::string> Volatile; ///< made, and not durable since
};

} // namespace pmx::test
