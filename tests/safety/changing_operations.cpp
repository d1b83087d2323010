#include "safety/changing_operations.h"

#include "dialogs/base/pmx_dlg.h"
#include "dialogs/editor/main_dlg.h"
#include "frame/dialog_exports.h"
#include "frame/list_exports.h"
#include "frame/save_as.h"
#include "res/ids.h"
#include "store/import_export.h"
#include "store/list_file.h"
#include "store/list_holder.h"
#include "support/favorite_folder.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstring>
#include <memory>
#include <ostream>

namespace pmx::test {

namespace {

constexpr const char* OtherSection = "[Other]\r\nx=1\r\n; mine\r\n";

/// A holder of the folder's list; null when it cannot be read.
std::unique_ptr<CPMXTemplUIListHolder> Holder(World& world) {
    auto holder = std::make_unique<CPMXTemplUIListHolder>(nullptr, nullptr, world.Store.Services);
    return holder->Open(world.Folder.Path().c_str()) ? std::move(holder) : nullptr;
}

void SaveChangedList(World& world) {
    const auto holder = Holder(world);
    if (holder && holder->GetList().GetSize() == 3) {
        holder->RenameAt(0, "Renamed");
        holder->GetAt(2)->SetDeleteFlag(1);
        holder->SaveList();
    }
}

void StoreUnder(World& world, const std::string& name) {
    const auto holder = Holder(world);
    if (holder && holder->GetList().GetSize() == 3 && holder->StoreFavorite(name, 1, world.Table.Bytes)) {
        holder->SaveList();
    }
}

void StoreNew(World& world) {
    StoreUnder(world, "New");
}

void StoreOver(World& world) {
    StoreUnder(world, "B");
}

std::unique_ptr<CPMXTemplUIListDataArray> Opened(World& world) {
    auto list = OpenList(world.Folder.Path().c_str(), nullptr, nullptr, world.Store.Services);
    return list && list->GetSize() == 3 ? std::move(list) : nullptr;
}

void AddStandard(World& world) {
    if (const auto list = Opened(world)) {
        AddStandardFavorite(*list, "Booklet", 4, 4, true);
    }
}

void ConfirmName(World& world, ResourceId dialogTemplate, ControlId box, const std::string& name) {
    world.Desktop.Scripts[dialogTemplate] = [box, name](MemoryUser& user) {
        user.Fill(box, name);
        user.Press(control::Ok);
    };
}

void SaveAs(World& world, std::int32_t mode, const std::string& name) {
    const auto list = Opened(world);
    if (!list) {
        return;
    }
    ConfirmName(world, dialog::CreateFavorite, control::CreateName, name);
    TemplInfo info{};
    info.Level = 1;
    std::memcpy(info.Name, "A", 1);
    std::vector<unsigned char> part(PMX_TABLE_SIZE);
    if (mode != SaveAsNew && !CopyTablePart(*list, 0, 1, part.data(), PMX_TABLE_SIZE)) {
        return;
    }
    SaveAsFavorite(*list, mode, info, world.Table.Bytes, WindowHandle::None, world.Desktop.Services);
}

void SaveAsANewOne(World& world) {
    SaveAs(world, SaveAsNew, "Saved");
}

void SaveOverOne(World& world) {
    SaveAs(world, 0, "Changed");
}

void Register(World& world) {
    ConfirmName(world, dialog::RegisterFavorite, control::RegisterName, "Registered");
    ShowRegisterDialog(world.Folder.Path().c_str(), ListFile, ".pmt", world.Table.Bytes, 1,
                       WindowHandle::None, world.Desktop.Services, world.Store.Services);
}

void RegisterOver(World& world) {
    ConfirmName(world, dialog::RegisterFavorite, control::RegisterName, "B");
    ShowRegisterDialog(world.Folder.Path().c_str(), ListFile, ".pmt", world.Table.Bytes, 1,
                       WindowHandle::None, world.Desktop.Services, world.Store.Services);
}

void RunEditor(World& world, const MemoryDialogs::Script& script) {
    world.Desktop.Scripts[dialog::Editor] = script;
    CPMXTemplUIMainDlg editor(world.Folder.Path().c_str(), ListFile, ".pmt", WindowHandle::None,
                              world.Desktop.Services, world.Store.Services);
    editor.DoModal();
}

void PressIfEnabled(MemoryUser& user, ControlId button) {
    if (user.IsOpen() && user.IsEnabled(button)) {
        user.Press(button);
    }
}

void ClickIfThere(MemoryUser& user, int row) {
    if (row < user.RowCount(control::EditorList)) {
        user.ClickRow(control::EditorList, row);
    }
}

/// A new favorite, a copy, an imported one, one with changed attributes, and one deleted.
void Edit(World& world, MemoryUser& user) {
    if (user.RowCount(control::EditorList) != 3) {
        return; // the list could not be read
    }
    ConfirmName(world, dialog::CreateFavorite, control::CreateName, "Fresh");
    PressIfEnabled(user, control::EditorNew);
    ConfirmName(world, dialog::CreateFavorite, control::CreateName, "Copied");
    ClickIfThere(user, 0);
    PressIfEnabled(user, control::EditorCopy);
    PressIfEnabled(user, control::EditorImport);
    ClickIfThere(user, 2);
    PressIfEnabled(user, control::EditorDelete);
}

void EditAndAccept(World& world) {
    world.Desktop.ChosenFile = world.Outside.Path("x.pmt");
    RunEditor(world, [&world](MemoryUser& user) {
        Edit(world, user);
        PressIfEnabled(user, control::Ok);
    });
}

void EditAndCancel(World& world) {
    world.Desktop.ChosenFile = world.Outside.Path("x.pmt");
    RunEditor(world, [&world](MemoryUser& user) { Edit(world, user); });
}

/// Changes the attributes, the name, the icon and the toolbar mark of the first favorite, and exports it.
void Rework(MemoryUser& user) {
    ClickIfThere(user, 0);
    PressIfEnabled(user, control::EditorEdit);
    if (user.IsOpen() && user.IsEnabled(control::EditorName)) {
        user.Fill(control::EditorName, "Renamed");
    }
    PressIfEnabled(user, control::ChangeIcon);
    PressIfEnabled(user, control::EditorExport);
    if (user.IsOpen() && user.RowCount(control::EditorList) > 0) {
        user.ClickStateImage(control::EditorList, 0);
    }
    PressIfEnabled(user, control::EditorDown);
    PressIfEnabled(user, control::Ok);
}

void ReworkAndAccept(World& world) {
    world.Desktop.ChosenFile = world.Outside.Path("x.pmt");
    world.Attributes.User = [](unsigned char* part) {
        *part = 99;
        return PMX_PROPUI_OK;
    };
    world.Desktop.Scripts[dialog::IconPicker] = [](MemoryUser& user) {
        user.ClickRow(control::PickerIcons, 7);
        user.Press(control::Ok);
    };
    RunEditor(world, Rework);
}

/// Moves the first favorite down and deletes the last.
void ArrangeAndAccept(World& world) {
    world.Desktop.Scripts[dialog::BasicList] = [](MemoryUser& user) {
        if (user.RowCount(control::BasicList) == 3) {
            user.ClickRow(control::BasicList, 0);
            PressIfEnabled(user, control::BasicDown);
            user.ClickRow(control::BasicList, 2);
            PressIfEnabled(user, control::BasicDelete);
        }
        PressIfEnabled(user, control::Ok);
    };
    ShowBasicList(world.Folder.Path().c_str(), ListFile, ".pmt", WindowHandle::None, world.Desktop.Services,
                  world.Store.Services);
}

void Import(World& world) {
    const auto list = Opened(world);
    if (!list) {
        return;
    }
    FavoriteImport import(*list);
    if (import.Read(world.Outside.Path("x.pmt")) == StoreResult::Success) {
        import.Finish("Imported");
        list->WriteListFile();
    }
}

void Export(World& world) {
    if (const auto list = Opened(world)) {
        ExportFavorite(*list, list->At(0), world.Outside.Path("x.pmt"));
    }
}

const Operation Operations[] = {
    {"SaveChangedList", SaveChangedList, {"b.pmt"}, {}, false},
    {"StoreNew", StoreNew, {}, {}, false},
    {"StoreOver", StoreOver, {}, {"b.pmt"}, false},
    {"AddStandard", AddStandard, {}, {}, false},
    {"SaveAsNew", SaveAsANewOne, {}, {}, false},
    {"SaveAsOverwrite", SaveOverOne, {}, {"a.pmt"}, false},
    {"Register", Register, {}, {}, false},
    {"RegisterOver", RegisterOver, {}, {"b.pmt"}, false},
    {"EditorOk", EditAndAccept, {"b.pmt"}, {}, true},
    {"EditorCancel", EditAndCancel, {}, {}, false},
    {"EditorRework", ReworkAndAccept, {}, {"a.pmt"}, true},
    {"BasicListOk", ArrangeAndAccept, {}, {}, false},
    {"Import", Import, {}, {}, false},
    {"Export", Export, {}, {}, false},
};

bool IsAmong(const std::vector<std::string>& names, const std::string& name) {
    return std::find(names.begin(), names.end(), name) != names.end();
}

/// The list with the file names that new favorites would have without a failure: a name that cannot be looked
/// at counts as taken, and the file gets a number.
std::vector<std::string> WithoutNumbers(std::vector<std::string> list) {
    const std::string numbered = "-1.pmt";
    for (std::string& value : list) {
        if (value.ends_with(numbered)) {
            value.replace(value.size() - numbered.size(), numbered.size(), ".pmt");
        }
    }
    return list;
}

void ExpectEveryFavoriteHasItsFile(const FolderContent& now) {
    for (const std::string& value : now.List) {
        const auto record = ParseListValue(value, SystemLeadBytes());
        ASSERT_NE(record, nullptr);
        if (!record->IsStandard()) {
            EXPECT_TRUE(now.Favorites.contains(record->GetFileName())) << value;
        }
    }
}

} // namespace

World::World() {
    FakeHost::WriteFavorite(Folder, "a.pmt", {TableOf(10), 1, "A"});
    FakeHost::WriteFavorite(Folder, "b.pmt", {TableOf(20), 1, "B"});
    FakeHost::WriteFavorite(Outside, "x.pmt", {TableOf(30), 2, "Imported"});
    Folder.Write(ListFile, std::string("[PMXTemplateList]\r\nTemplateNum=3\r\n"
                                       "TemplateData0=0~A~1~1~20~a.pmt\r\n"
                                       "TemplateData1=1~Duplex~101~1~3~3\r\n"
                                       "TemplateData2=0~B~1~0~21~b.pmt\r\n") +
                               OtherSection);
    FakeAttributeDialog::PutInto(Desktop.Inner.Libraries);
}

FolderContent World::Content() {
    Host.Plan.Heal();
    FolderContent content;
    CPMXTemplUIListDataArray list(nullptr, nullptr, SystemStoreServices());
    EXPECT_TRUE(list.SetFolder(Folder.Path().c_str()));
    EXPECT_TRUE(list.LoadList());
    for (const CPMXTemplUIListData* const record : list.GetRecords()) {
        content.List.push_back(FormatListValue(*record));
    }
    content.Other = Folder.Read(ListFile).find(OtherSection) != std::string::npos ? "1" : "lost";
    for (const std::string& name : Folder.Names()) {
        if (name.ends_with(".pmt")) {
            content.Favorites.emplace(name, Folder.Read(name));
        }
    }
    return content;
}

std::vector<std::string> World::LeftBehind() const {
    std::vector<std::string> names;
    for (const TempFolder* const folder : {&Folder, &Outside}) {
        for (const std::string& name : folder->Names()) {
            if (name != ListFile && !name.ends_with(".pmt")) {
                names.push_back(name);
            }
        }
    }
    return names;
}

std::span<const Operation> ChangingOperations() {
    return Operations;
}

void PrintTo(const Operation& operation, std::ostream* out) {
    *out << operation.Name;
}

Outcome OutcomeOf(const Operation& operation) {
    Outcome outcome;
    {
        World world;
        outcome.Before = world.Content();
    }
    World world;
    operation.Run(world);
    outcome.After = world.Content();
    EXPECT_EQ(world.LeftBehind(), std::vector<std::string>());
    const std::string name = operation.Name;
    const bool isSame =
        outcome.Before.List == outcome.After.List && outcome.Before.Favorites == outcome.After.Favorites;
    EXPECT_EQ(isSame, name == "Export" || name == "EditorCancel") << "the operation does what it is here for";
    return outcome;
}

void ExpectNothingLost(const Operation& operation, const Outcome& outcome, const FolderContent& now) {
    EXPECT_EQ(now.Other, "1") << "the other section";
    if (!operation.HasSteps) {
        const std::vector<std::string> list = WithoutNumbers(now.List);
        EXPECT_TRUE(list == outcome.Before.List || list == outcome.After.List)
            << "neither the old list nor the new one: " << testing::PrintToString(now.List);
    }
    for (const auto& [name, bytes] : outcome.Before.Favorites) {
        if (!now.Favorites.contains(name)) {
            EXPECT_TRUE(IsAmong(operation.Taken, name)) << name << " is gone";
        } else if (now.Favorites.at(name) != bytes) {
            EXPECT_TRUE(IsAmong(operation.Overwritten, name)) << name << " has changed";
            EXPECT_TRUE(now.Favorites.at(name) == outcome.After.Favorites.at(name)) << name << " is damaged";
        }
    }
    ExpectEveryFavoriteHasItsFile(now);
}

} // namespace pmx::test
