#pragma once

#include "PMXTemplUI.h"
#include "exports/export_test.h"
#include "support/hostile_lists.h"
#include "support/unix_shell.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <filesystem>
#include <map>
#include <string>
#include <vector>

// Favorites folders made to do harm, for the built library. Their lists are the values of the list file.
namespace pmx::exports_test {

/// Favorites whose files are whatever a file can be, see HostileFolder.
std::vector<std::string> FavoritesOfEveryKindOfFile();

using test::FavoritesAtEveryLimit;
using test::FavoritesWithBrokenNames;
using test::HostileCounts;

/// A favorites folder beside files and a folder that do not belong to it. At the end of the test they must be
/// as they were, and nothing may have been made beside them.
class HostileFolder : public testing::Test {
protected:
    HostileFolder();
    ~HostileFolder() override;

    /// The path of the favorites folder, and of a file in it.
    std::string Favorites() const { return Folder.Path("Favorites"); }
    std::string Favorites(const std::string& name) const { return Favorites() + '\\' + name; }

    std::vector<std::string> FavoritesThatPointOutside() const {
        return test::FavoritesThatPointOutside(Folder.Path("outside.pmt"));
    }

    /// Makes the files of FavoritesOfEveryKindOfFile: damaged.pmt, empty.pmt, cut.pmt, altered.pmt, huge.pmt
    /// (200 MB), folder.pmt, link.pmt (to a favorite outside), nowhere.pmt (a link to a missing file
    /// outside), loop.pmt (a link to itself), linked.pmt (a link to a folder outside), pipe.pmt, and
    /// good.pmt.
    void WriteEveryKindOfFile() const;

    void WriteList(const std::string& count, const std::vector<std::string>& values) const;
    void WriteList(const std::vector<std::string>& values) const;

    /// The list as an export reads it; null when it cannot be opened.
    ListHandle Open() const;

    /// The names of the favorites that are listed.
    std::vector<std::string> ListedNames() const;

    /// Names of the files in the favorites folder that nobody can have meant to be there.
    std::vector<std::string> LeftBehind() const;

    test::FolderForLinks Folder{Place(), "hostile"};

private:
    static std::filesystem::path Place();
    std::map<std::string, std::string> Outside() const;

    std::map<std::string, std::string> OutsideBefore;
};

} // namespace pmx::exports_test
