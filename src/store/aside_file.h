#pragma once

#include "store/store_services.h"

#include <string>

namespace pmx {

/// A file in the making, under a name that nobody else uses, in the folder where it is to lie; then put in its
/// place. Deleted at the end unless that was done.
///
/// Its name is `Pmx`, eight hexadecimal digits and `.tmp`. A process that is killed can leave it behind.
class AsideFile {
public:
    /// An empty file for whoever gets its path to write. `folder` ends in a separator or is empty; `services`
    /// must outlive this object.
    AsideFile(const StoreServices& services, const std::string& folder);

    /// A file with that content, durable.
    AsideFile(const StoreServices& services, const std::string& folder, const std::string& content);

    /// The same, which is put in the place of `target` at once. `refusal` says why that was refused, so that PutOver has
    /// to try again; None when it was not, or when there is no file.
    AsideFile(const StoreServices& services, const std::string& folder, const std::string& content,
              const std::string& target, FileError& refusal);
    AsideFile(const AsideFile&) = delete;
    AsideFile& operator=(const AsideFile&) = delete;
    ~AsideFile();

    /// Why there is no file; None when there is one.
    FileError Error() const { return Made; }

    /// Empty when no file could be made.
    const std::string& Path() const { return OwnPath; }

    /// Makes durable what somebody else has written to the file.
    FileError Flush() { return Services.FileSystem.Flush(OwnPath); }

    /// Puts the file, which is durable, in the place of `target`, which may or may not exist.
    FileError PutOver(const std::string& target);

    /// Gives the file, which is durable, the name of `target`; Exists when there is one.
    FileError PutNew(const std::string& target);

    /// Leaves the file where it is.
    void Keep() { OwnPath.clear(); }

private:
    /// What the others begin with, so that whatever they throw the file goes.
    explicit AsideFile(const StoreServices& services) : Services(services) {}

    /// Has `make` make a file under one name after the other until it finds one that is free.
    template <typename Make>
    void MakeIn(const std::string& folder, Make make);

    const StoreServices& Services;
    std::string OwnPath;
    FileError Made = FileError::Exists;
};

} // namespace pmx
