#include "frame/dialog_exports.h"
#include "res/ids.h"
#include "safety/list_session.h"
#include "support/sjis.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <memory>
#include <optional>

namespace pmx::test {

namespace {

/// Bytes that the user changes in the print-attribute dialog, from the start of the level's part.
constexpr std::size_t BytesEdited = 16;

enum class Attributes { Unknown, Accepted, Cancelled, Failed };

class EditorSession final : public ListSession {
public:
    explicit EditorSession(ModelWorld& world) : ListSession(world, Ids) {}

private:
    static constexpr int NameColumn = 1;
    static constexpr int CategoryColumn = 2;
    static constexpr Controls Ids{control::EditorList, control::EditorName, control::EditorIcon,
                                  control::EditorUp,   control::EditorDown, control::EditorDelete,
                                  NameColumn};

    std::int64_t Show() override {
        return ShowEditor(World.Favorites.Path().c_str(), WindowHandle::None, Desktop.Services,
                          World.Store.Services);
    }
    ResourceId Template() const override { return dialog::Editor; }
    bool MayHaveIcon(const model::Favorite& favorite) const override {
        return model::IsDocumentLevel(favorite.Level);
    }

    /// The list has the new name even when the favorite's file cannot be read, but then the row does not show
    /// it.
    Leaving Rename(model::Favorite& favorite, const std::string& name) override {
        favorite.Name = name;
        if (!Read(favorite)) {
            return Leaving::Told;
        }
        favorite.Shown = name;
        return Leaving::Quiet;
    }

    bool HasIconButtonWithoutRows() const override { return false; }

    void Accept() override {
        ExpectRowsInTheList();
        World.Inside.RemoveFilesOfDeleted(Records);
    }

    void Cancel() override {
        for (const model::Favorite& one : Records) {
            if (one.IsNew) {
                World.ExpectNoFile(one.File);
            }
        }
    }

    void OwnGesture() override {
        using Self = EditorSession;
        static constexpr std::array<void (Self::*)(), 10> Gestures = {
            &Self::PressNew,    &Self::PressEdit,  &Self::PressCopy, &Self::PressImport, &Self::PressExport,
            &Self::DoubleClick, &Self::PressSpace, &Self::ClickBox,  &Self::ClickBox,    &Self::ClickBox};
        (this->*World.AnyOf(Gestures))();
    }

    void CompareOwnControls() const override {
        EXPECT_EQ(User->IsEnabled(control::EditorEdit), HasChangeButtons);
        EXPECT_EQ(User->IsEnabled(control::EditorCopy), HasChangeButtons);
        EXPECT_EQ(User->IsEnabled(control::EditorExport), HasChangeButtons);
    }

    void CompareRow(int row, const model::Favorite& favorite) const override {
        ListSession::CompareRow(row, favorite);
        EXPECT_EQ(User->StateImage(control::EditorList, row), BoxOf(favorite)) << Row(row);
        static const std::array<std::string, 6> Categories = {
            "", Sjis(u8"文書"), Sjis(u8"セクション"), Sjis(u8"用紙"), Sjis(u8"面"), Sjis(u8"原稿")};
        const int level = favorite.Level > 100 ? favorite.Level - 100 : favorite.Level;
        EXPECT_EQ(User->Cell(control::EditorList, row, CategoryColumn),
                  Categories.at(model::HasPart(level) ? static_cast<std::size_t>(level) : 0))
            << Row(row);
    }

    /// The picture of the toolbar box: empty, ticked, or none that can be ticked.
    static int BoxOf(const model::Favorite& favorite) {
        const int ofDocument = favorite.OnToolbar ? 2 : 1;
        return model::IsDocumentLevel(favorite.Level) ? ofDocument : 3;
    }

    /// True when the favorite's attributes are there. Otherwise a message comes.
    bool Read(model::Favorite& favorite) {
        if (World.Inside.Read(favorite)) {
            return true;
        }
        Expect(text::EditorFavoriteUnreadable);
        return false;
    }

    std::vector<std::string> NamesInUse() const {
        std::vector<std::string> names;
        for (const model::Favorite& one : Records) {
            if (!one.IsDeleted) {
                names.push_back(one.Name);
            }
        }
        return names;
    }

    NameAnswer AskName(const std::string& proposed, int level, bool mayChooseLevel) {
        return ExpectNameDialog(World, Desktop, NamesInUse(), proposed, level, mayChooseLevel);
    }

    // The print-attribute dialog

    /// The user changes the part of the level in the host's dialog, accepts it or not. True when `table` is
    /// then to be used.
    bool EditAttributes(int level, model::Table& table) {
        const int outcome = World.OneIn(12) ? 7 : World.OneIn(5) ? PMX_PROPUI_CANCEL : PMX_PROPUI_OK;
        const auto value = static_cast<unsigned char>(World.Below(256));
        World.Note("edit the attributes, which ends with " + std::to_string(outcome));
        World.Attributes.User = [outcome, value](unsigned char* part) {
            std::fill_n(part, BytesEdited, value);
            return outcome;
        };
        if (outcome == PMX_PROPUI_OK) {
            auto edited = std::make_shared<model::TableBytes>(*table);
            std::fill_n(edited->begin() + static_cast<std::ptrdiff_t>(model::PartStart(level)), BytesEdited,
                        value);
            table = edited;
        } else if (outcome != PMX_PROPUI_CANCEL) {
            Expect(text::AttributeDialogFailed, MessageIcon::Stop);
        }
        return outcome == PMX_PROPUI_OK;
    }

    // Commands

    void Add(const std::string& name, int level, const model::Table& table) {
        model::Favorite added{
            .Name = name, .Level = level, .File = World.Inside.FreeName(name), .IsNew = true};
        added.Attributes = table;
        World.ExpectFile(added.File, {name, level, table});
        Append(added);
    }

    void PressNew() {
        Press("new", control::EditorNew, true, [this] {
            const NameAnswer answer = AskName("", 1, true);
            model::Table table = FromHost(TableOf(FreshSeed));
            if (answer.IsGiven && EditAttributes(answer.Level, table)) {
                Add(answer.Name, answer.Level, table);
            }
        });
    }

    void PressEdit() {
        Press("edit", control::EditorEdit, HasChangeButtons, [this] { Edit(); });
    }

    void Edit() {
        model::Favorite* const one = At(Current());
        if (one == nullptr || !Read(*one)) {
            return;
        }
        if (one->IsStandard) {
            Copy(true);
        } else if (model::HasPart(one->Level) && EditAttributes(one->Level, one->Attributes)) {
            World.ExpectFile(one->File, {one->Name, one->Level, one->Attributes});
        }
    }

    void PressCopy() {
        Press("copy", control::EditorCopy, HasChangeButtons, [this] { Copy(false); });
    }

    void Copy(bool withAttributes) {
        model::Favorite* const one = At(Current());
        if (one == nullptr || !Read(*one)) {
            return;
        }
        model::Table table = one->Attributes;
        const NameAnswer answer = AskName("", one->Level, false);
        if (answer.IsGiven && (!withAttributes || EditAttributes(answer.Level, table))) {
            Add(answer.Name, answer.Level, table);
        }
    }

    // The toolbar

    /// False when a message comes.
    bool Toggle(int row) {
        model::Favorite* const one = At(row);
        if (one == nullptr || !model::IsDocumentLevel(one->Level)) {
            return true;
        }
        const auto count = std::count_if(Records.begin(), Records.end(),
                                         [](const auto& record) { return record.OnToolbar; });
        if (!one->OnToolbar && count >= model::ToolbarLimit) {
            World.Note("(the toolbar is full)");
            std::string message = Desktop.Services.Strings.StringOf(text::ToolbarFull).value_or("");
            message.replace(message.find("%d"), 2, "20");
            Desktop.Messages.ExpectText(message, MessageIcon::Exclamation);
            return false;
        }
        one->OnToolbar = !one->OnToolbar;
        return true;
    }

    void ClickBox() {
        if (Rows.empty()) {
            return;
        }
        const int row = static_cast<int>(World.Below(Rows.size()));
        const bool isDouble = World.OneIn(6);
        World.Note(std::string(isDouble ? "double-click" : "click") + " the box of " + Row(row));
        if (Select(row) && Toggle(row) && isDouble) {
            Toggle(row);
        }
        if (isDouble) {
            User->DoubleClickStateImage(control::EditorList, row);
        } else {
            User->ClickStateImage(control::EditorList, row);
        }
    }

    void PressSpace() {
        World.Note("press the space key in the list");
        const bool isThere = LeaveBox() != Leaving::Refused;
        User->TabTo(control::EditorList);
        if (isThere) {
            Toggle(Mark);
            User->Key(key::Space);
        }
    }

    void DoubleClick() {
        if (Rows.empty()) {
            return;
        }
        const int row = static_cast<int>(World.Below(Rows.size()));
        World.Note("double-click " + Row(row));
        if (Select(row)) {
            if (At(row)->IsStandard) {
                Expect(text::StandardNotEditable);
            } else {
                Edit();
            }
        }
        User->DoubleClickRow(control::EditorList, row);
    }

    // Import

    void PressImport() {
        Press("import", control::EditorImport, true, [this] {
            const bool isFromFolder = World.OneIn(4) && !World.Inside.Files.empty();
            const model::Folder& source = isFromFolder ? World.Inside : World.Outside;
            const std::string name = World.OneIn(8) ? "missing.pmt" : World.AnyOf(source.Files).first;
            if (World.OneIn(8)) {
                World.Note("choose no file");
                Desktop.FileChoice.OpenAnswers.emplace_back(std::nullopt);
                return;
            }
            World.Note("choose " + name + (isFromFolder ? " of the favorites" : " elsewhere"));
            const TempFolder& folder = isFromFolder ? World.Favorites : World.Elsewhere;
            Desktop.FileChoice.OpenAnswers.emplace_back(folder.Path(name));
            Import(name, source.Find(name));
        });
    }

    void Import(const std::string& name, const model::File* source) {
        if (source == nullptr) {
            Expect(text::ImportFailed);
            return;
        }
        if (!source->Attributes) {
            Expect(text::EditorFavoriteUnreadable);
            return;
        }
        model::Favorite added{.Level = source->Level, .Icon = 0, .IsNew = true};
        added.Attributes = source->Attributes;
        const model::File content = *source;
        for (const model::Favorite& one : Records) {
            if (model::SameName(one.Name, content.Name)) {
                const NameAnswer answer = AskName(content.Name, content.Level, false);
                if (!answer.IsGiven) {
                    return;
                }
                added.Name = answer.Name;
            }
        }
        added.File = World.Inside.FreeName(model::Listable(name.substr(0, name.rfind('.'))));
        World.ExpectFile(added.File, content);
        Append(added);
    }

    // Export

    void PressExport() {
        Press("export", control::EditorExport, HasChangeButtons, [this] {
            model::Favorite* const one = At(Current());
            if (one != nullptr && Read(*one)) {
                ChooseTarget(*one);
            }
        });
        const auto& requests = Desktop.FileChoice.SaveRequests;
        if (!requests.empty()) {
            EXPECT_EQ(requests.back().ProposedName, Proposed);
        }
    }

    void ChooseTarget(const model::Favorite& one) {
        Proposed = model::SafeFileName(one.Name) + ".pmt";
        static constexpr std::array<const char*, 4> Targets = {"out.pmt", "Out 2.pmt", "A.pmt",
                                                               "noextension"};
        auto& answers = Desktop.FileChoice.SaveAnswers;
        switch (World.Below(8)) {
        case 0:
            World.Note("choose no file");
            answers.emplace_back(std::nullopt);
            break;
        case 1:
            World.Note("choose the list file");
            answers.emplace_back(World.Favorites.Path("PmxTempleList.ini"));
            Expect(text::FileNotCreated);
            break;
        case 2:
            World.Note("choose a folder that is not there");
            answers.emplace_back(World.Elsewhere.Path("missing\\x.pmt"));
            Expect(text::FileNotCreated);
            break;
        case 3:
            World.Note("choose the file of a favorite");
            answers.emplace_back(FileOf(World.OneIn(2) ? one : World.AnyOf(Records)));
            break;
        default: {
            const std::string target = World.AnyOf(Targets);
            World.Note("choose " + target + " elsewhere");
            answers.emplace_back(World.Elsewhere.Path(target));
            World.Outside.Write(target, {one.Name, one.Level, World.Inside.Find(one.File)->Attributes});
        }
        }
    }

    /// The path of a user favorite's file, which is refused; none for a standard favorite.
    std::optional<std::string> FileOf(const model::Favorite& one) {
        if (one.IsStandard) {
            return std::nullopt;
        }
        Expect(text::ImportedNotOverwritable);
        return World.Favorites.Path(World.OneIn(2) ? one.File : model::SmallLetters(one.File));
    }

    std::string Proposed; ///< the name in the file dialog of the last export
};

class BasicSession final : public ListSession {
public:
    explicit BasicSession(ModelWorld& world) : ListSession(world, Ids) {}

private:
    static constexpr Controls Ids{control::BasicList,
                                  control::BasicName,
                                  control::BasicIcon,
                                  control::BasicUp,
                                  control::BasicDown,
                                  control::BasicDelete,
                                  0};

    std::int64_t Show() override {
        return ShowBasicList(World.Favorites.Path().c_str(), "PmxTempleList.ini", ".pmt", WindowHandle::None,
                             Desktop.Services, World.Store.Services);
    }
    ResourceId Template() const override { return dialog::BasicList; }
    bool MayHaveIcon(const model::Favorite& /*favorite*/) const override { return true; }

    /// A favorite whose file cannot be read keeps its name.
    Leaving Rename(model::Favorite& favorite, const std::string& name) override {
        if (!World.Inside.Read(favorite)) {
            Expect(text::BasicFavoriteUnreadable);
            return Leaving::NotTaken;
        }
        favorite.Name = name;
        favorite.Shown = name;
        return Leaving::Quiet;
    }

    bool HasIconButtonWithoutRows() const override { return true; }

    /// The files of deleted favorites stay.
    void Accept() override { ExpectRowsInTheList(); }
};

} // namespace

void RunEditor(ModelWorld& world) {
    world.Note("open the editor");
    EditorSession(world).Run();
}

void RunBasicList(ModelWorld& world) {
    world.Note("open the basic list");
    BasicSession(world).Run();
}

} // namespace pmx::test
