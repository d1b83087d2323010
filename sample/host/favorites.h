#pragma once

#include "docmgr/attribute_table.h"

#include <PMXTemplUI.h>

#include <memory>
#include <optional>
#include <string>
#include <vector>

#include <windows.h>

namespace pmx::host {

/// What a call of the favorites library that shows a dialog ended with.
enum class Outcome { Accepted, Cancelled, Failed };

/// The favorites of one folder: everything that this host asks of the favorites library, call by call.
class Favorites {
public:
    /// Opens the folder's list; IsOpen tells whether that went well. An empty list gets the standard
    /// favorites.
    explicit Favorites(std::string folder);

    bool IsOpen() const { return List != nullptr; }
    const std::string& FolderPath() const { return Folder; }

    /// All favorites in the order of the list.
    const std::vector<TemplInfo>& All() const { return Infos; }

    /// The favorite at that position of the list; null when there is none.
    const TemplInfo* FindAt(std::int64_t position) const;

    /// Reads the list again, after a dialog of the library may have changed it.
    void Reload();

    /// Replaces the favorite's part of the table by its settings; false, and an unchanged table, when the
    /// favorite cannot be read.
    bool Apply(const TemplInfo& favorite, sample::AttributeTable& table) const;
    /// The same for a favorite of which only name and level are remembered; standard favorites have no file
    /// and are not found this way.
    bool ApplyByName(const std::string& name, std::int32_t level, sample::AttributeTable& table) const;
    /// Whether the name alone tells which favorite is meant: a list file can hold several of one name.
    bool IsOnlyOneOfItsName(const TemplInfo& favorite) const;

    /// Asks for a name and stores the table as a new favorite, or over the given one.
    Outcome SaveAsNew(TemplInfo& info, const sample::AttributeTable& table, HWND owner);
    Outcome SaveOver(TemplInfo& info, const sample::AttributeTable& table, HWND owner);

    /// The dialogs of the library.
    Outcome ShowEditor(HWND owner);
    Outcome ShowRegister(const sample::AttributeTable& table, HWND owner);
    Outcome ShowBasicList(HWND owner);

    /// Adds those of the standard favorites that the list does not have.
    void AddStandardFavorites();

private:
    struct Closer {
        void operator()(void* list) const { EX_DestroyTemplList(list); }
    };

    void Open();
    void ReadInfos();
    bool HasStandard(std::int64_t number) const;
    std::vector<TemplInfo> InfosOf(std::int32_t level) const;
    Outcome Reloaded(std::int64_t result);

    std::string Folder;
    std::unique_ptr<void, Closer> List;
    std::vector<TemplInfo> Infos;
};

/// Whether the favorite is one of the standard ones, which have no file.
bool IsStandard(const TemplInfo& favorite);

/// The level from 1 to 5 that the favorite's settings belong to.
std::int32_t LevelOf(const TemplInfo& favorite);

} // namespace pmx::host
