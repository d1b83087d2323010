#pragma once

#include "safety/user_model.h"
#include "support/fake_attribute_dialog.h"
#include "support/fake_host.h"
#include "support/fake_services.h"
#include "support/temp_folder.h"

#include <cstddef>
#include <optional>
#include <random>
#include <set>
#include <string>
#include <vector>

namespace pmx::test {

/// A folder of favorites on disk, next to what a user expects of it, and chance, which decides what the user
/// does. The same seed leads to the same actions.
class ModelWorld {
public:
    explicit ModelWorld(unsigned seed);

    // Chance

    std::size_t Below(std::size_t limit) { return Random() % limit; }
    int IntBelow(int limit) { return static_cast<int>(Below(static_cast<std::size_t>(limit))); }
    bool OneIn(std::size_t many) { return Below(many) == 0; }

    template <typename Container>
    const auto& AnyOf(const Container& container) {
        return *std::next(container.begin(), static_cast<std::ptrdiff_t>(Below(container.size())));
    }

    /// A name as users type it, good or bad.
    std::string AnyName();
    int AnyLevel() { return 1 + IntBelow(5); }

    /// What the user, or the host, does next. Counts as an action.
    void Note(const std::string& action);
    int Actions() const { return Count; }

    /// The last actions, one a line.
    std::string Trace() const;

    // What happens outside the dialogs

    /// Somebody removes or damages a favorite file, or adds one that is in no list.
    void MeddleWithFiles();

    /// The favorite file of that name in the folder changes.
    void WriteFile(const std::string& name, const model::File& content);

    // Expectations

    /// From now on the list file has these lines, in the order of the vector; `count` is the number in it.
    void ExpectList(const model::Favorites& lines, std::size_t count);

    /// The favorite file gets this content, or is removed.
    void ExpectFile(const std::string& name, const model::File& content);
    void ExpectNoFile(const std::string& name) { Inside.Remove(name); }

    /// Compares the list file, the list that the store reads, the files of both folders, and the content of
    /// those that have changed.
    void Compare();

    /// A table like no other.
    model::Table AnyTable();

    FakeHost Host;
    FakeServices Store;
    FakeAttributeDialog Attributes;
    TempFolder Favorites{"model"};
    TempFolder Elsewhere{"elsewhere"};
    model::Folder Inside;  ///< of the folder with the favorites
    model::Folder Outside; ///< of a folder elsewhere, without a list

private:
    /// Fills the folders, with the list as somebody may have written it by hand.
    void FillFolders();
    void CompareListFile();
    void CompareListRead();
    static void CompareFile(const TempFolder& folder, const std::string& name, const model::File& content);
    void WriteListFile();
    model::Favorite AnyListed(int number, bool isCrowded);

    std::mt19937 Random;
    int Count = 0;
    std::vector<std::string> LastActions;
    std::vector<std::string> Lines; ///< of the list file
    std::size_t CountInList = 0;
    std::set<std::string> Changed; ///< files of the folder
};

/// The host's form of a table.
_LM_DOCUMENTLAYOUTTABLE ForHost(const model::Table& table);
model::Table FromHost(const _LM_DOCUMENTLAYOUTTABLE& table);

} // namespace pmx::test
