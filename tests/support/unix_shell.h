#pragma once

#include "support/temp_folder.h"

#include <string>

namespace pmx::test {

/// Runs a script of the Unix shell in a folder and returns when it has succeeded; throws when it has not, or
/// takes too long. Under Wine it runs on the system beneath, where there are links and pipes. The script has
/// no double quotes.
void RunShell(const TempFolder& folder, const std::string& script);

/// A temporary folder in which a shell may make links and pipes, which a Windows program cannot remove.
class FolderForLinks : public TempFolder {
public:
    using TempFolder::TempFolder;
    // NOLINTNEXTLINE(bugprone-exception-escape): what cannot be cleared away is to end the tests
    ~FolderForLinks() { RunShell(*this, "find . -type l -delete && find . -type p -delete"); }
    FolderForLinks(const FolderForLinks&) = delete;
    FolderForLinks& operator=(const FolderForLinks&) = delete;
};

} // namespace pmx::test
