#pragma once

#include "support/fake_attribute_dialog.h"
#include "support/fake_host.h"
#include "support/fake_services.h"
#include "support/quiet_desktop.h"
#include "support/temp_folder.h"

#include <iosfwd>
#include <map>
#include <span>
#include <string>
#include <vector>

namespace pmx::test {

/// What a folder holds: the other section, the list's values in order, and the bytes of each favorite file.
struct FolderContent {
    std::string Other;
    std::vector<std::string> List;
    std::map<std::string, std::string> Favorites;
};

/// A folder with three favorites, a file elsewhere, and everything that may fail.
class World {
public:
    World();

    /// What the folder holds now, read when nothing fails any more.
    FolderContent Content();

    /// Files in either folder whose names nobody has given.
    std::vector<std::string> LeftBehind() const;

    FakeHost Host;
    FakeServices Store;
    TempFolder Folder{"faults"};
    TempFolder Outside{"outside"};
    QuietDesktop Desktop;
    FakeAttributeDialog Attributes;
    const _LM_DOCUMENTLAYOUTTABLE Table = TableOf(90);
};

/// An operation, and which favorites of before it means to take away or to overwrite.
struct Operation {
    const char* Name;
    void (*Run)(World&);
    std::vector<std::string> Taken;
    std::vector<std::string> Overwritten;
    /// True when faults may leave some of several changes done, each whole.
    bool HasSteps;
};

/// Everything that changes favorites.
std::span<const Operation> ChangingOperations();

void PrintTo(const Operation& operation, std::ostream* out);

/// The folder before an operation, and after it without any fault.
struct Outcome {
    FolderContent Before;
    FolderContent After;
};

/// What the operation does, after checking that it does something and leaves nothing behind.
Outcome OutcomeOf(const Operation& operation);

/// The list is the old or the new one, every favorite of it has its file, and no favorite is gone or changed
/// that the operation did not mean to.
void ExpectNothingLost(const Operation& operation, const Outcome& outcome, const FolderContent& now);

} // namespace pmx::test
