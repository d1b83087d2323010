// Long random sequences of what users and hosts do, through the dialogs and the exports' functions, compared
// with a plain model all along: what the dialogs show, their messages, results, the list, and every file.
#include "frame/dialog_exports.h"
#include "frame/list_exports.h"
#include "frame/save_as.h"
#include "res/ids.h"
#include "safety/list_session.h"
#include "safety/model_world.h"
#include "store/levels.h"
#include "store/list_file.h"
#include "store/list_holder.h"
#include "support/favorite_folder.h"
#include "support/sjis.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <cstdlib>
#include <cstring>
#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace pmx::test {

namespace {

/// The environment variable as a number.
int NumberFromEnvironment(const char* name, int usual) {
    const char* const value = std::getenv(name);
    return value != nullptr ? std::atoi(value) : usual;
}

/// How many actions; PMX_MODEL_STEPS asks for another number.
int ActionCount() {
#if defined(_WIN32)
    constexpr int Usual = 6'000; // files are slow there
#else
    constexpr int Usual = 40'000;
#endif
    return NumberFromEnvironment("PMX_MODEL_STEPS", Usual);
}

/// After so many actions a new folder is taken.
constexpr int ActionsInAFolder = 1'500;

/// Most favorites in a folder that goes on being used.
constexpr std::size_t MostFavorites = 40;

std::vector<std::string> NamesOf(const model::Favorites& favorites) {
    std::vector<std::string> names;
    for (const model::Favorite& one : favorites) {
        names.push_back(one.Name);
    }
    return names;
}

// The register dialog

class RegisterSession {
public:
    explicit RegisterSession(ModelWorld& world) : World(world), Favorites(world.Inside.List) {}

    void Run() {
        Desktop.Dialogs.OnOpened(dialog::RegisterFavorite, [this](MemoryUser& user) { Drive(user); });
        Level = World.OneIn(15) ? 6 : World.AnyLevel();
        const _LM_DOCUMENTLAYOUTTABLE part = ForHost(Given);
        const std::int64_t result =
            ShowRegisterDialog(World.Favorites.Path().c_str(), ListFile, ".pmt", part.Bytes, Level,
                               WindowHandle::None, Desktop.Services, World.Store.Services);
        EXPECT_EQ(result, IsAccepted ? 0 : 1);
    }

private:
    void Drive(MemoryUser& user) {
        for (int left = 1 + World.IntBelow(5); left > 0 && user.IsOpen(); --left) {
            if (World.OneIn(3)) {
                World.Note("press change icon");
                Icon = ExpectIconPicker(World, Desktop, Icon).value_or(Icon);
                user.Press(control::RegisterChangeIcon);
                EXPECT_EQ(user.IconIn(control::RegisterIcon)->Index, Icon);
            } else {
                TryName(user);
            }
        }
        if (user.IsOpen()) {
            EXPECT_FALSE(IsAccepted);
            World.Note("cancel the register dialog");
            user.Escape();
        }
    }

    void TryName(MemoryUser& user) {
        const std::string written = World.AnyName();
        World.Note("register under \"" + written + "\"");
        const std::string name = model::Trimmed(model::Typed(written));
        IsAccepted = IsAcceptable(name);
        user.Fill(control::RegisterName, written);
        if (World.OneIn(2)) {
            user.Press(control::Ok);
        } else {
            user.Enter();
        }
        EXPECT_EQ(user.IsOpen(), !IsAccepted);
        if (user.IsOpen()) {
            EXPECT_EQ(user.Focused(), control::RegisterName);
        } else {
            Store(name);
        }
    }

    bool IsAcceptable(const std::string& name) {
        if (name.empty()) {
            Desktop.Messages.Expect(text::RegisterNameMissing, MessageIcon::Exclamation);
            return false;
        }
        if (model::HasTilde(name)) {
            Desktop.Messages.Expect(text::NameHasSeparator, MessageIcon::Exclamation);
            return false;
        }
        const auto found = FindName(name);
        if (found == Favorites.end()) {
            return true;
        }
        if (found->IsStandard) {
            Desktop.Messages.Expect(text::RegisterStandardNotOverwritable, MessageIcon::Exclamation);
            return false;
        }
        const bool isYes = World.OneIn(2);
        World.Note(std::string("(overwrite? ") + (isYes ? "yes)" : "no)"));
        Desktop.Messages.ExpectQuestion(text::RegisterAskOverwrite,
                                        isYes ? MessageAnswer::Yes : MessageAnswer::No);
        return isYes;
    }

    model::Favorites::iterator FindName(const std::string& name) {
        return std::find_if(Favorites.begin(), Favorites.end(),
                            [&](const model::Favorite& one) { return model::SameName(one.Name, name); });
    }

    /// A favorite that cannot be stored changes nothing.
    void Store(const std::string& name) {
        if (!model::HasPart(Level)) {
            return;
        }
        model::Favorite stored{.Name = name, .Level = Level, .OnToolbar = true, .Icon = Icon};
        model::Table before = FromHost(TableOf(FreshSeed));
        if (FindName(name) == Favorites.end()) {
            stored.File = World.Inside.FreeName(name);
            Favorites.push_back(stored);
        } else {
            const auto exact = std::find_if(Favorites.begin(), Favorites.end(),
                                            [&](const model::Favorite& one) { return one.Name == name; });
            if (exact == Favorites.end() || exact->IsStandard || !World.Inside.Read(*exact)) {
                return;
            }
            before = exact->Attributes;
            stored.File = exact->File;
            *exact = stored;
        }
        World.ExpectFile(stored.File, {name, Level, WithPart(before)});
        World.ExpectList(Favorites, Favorites.size());
    }

    /// What the host gives begins with the part of the level.
    model::Table WithPart(const model::Table& before) const {
        auto table = std::make_shared<model::TableBytes>(*before);
        const std::size_t start = model::PartStart(Level);
        std::copy_n(Given->begin(), table->size() - start,
                    table->begin() + static_cast<std::ptrdiff_t>(start));
        return table;
    }

    ModelWorld& World;
    MemoryDesktop Desktop;
    model::Favorites Favorites;
    model::Table Given = World.AnyTable();
    int Level = 1;
    int Icon = model::NewIcon;
    bool IsAccepted = false;
};

// A host with a list handle

class HostSession {
public:
    explicit HostSession(ModelWorld& world)
        : World(world),
          Favorites(world.Inside.List),
          List(OpenList(world.Favorites.Path().c_str(), nullptr, nullptr, world.Store.Services)) {}

    void Run() {
        using Self = HostSession;
        static constexpr std::array<void (Self::*)(), 6> Calls = {&Self::AskForAll,   &Self::AskForTable,
                                                                  &Self::AskForTable, &Self::AddStandard,
                                                                  &Self::SaveNew,     &Self::SaveOver};
        for (int left = 1 + World.IntBelow(8); left > 0 && !testing::Test::HasFailure(); --left) {
            (this->*World.AnyOf(Calls))();
        }
    }

private:
    std::optional<std::size_t> AnyPosition() {
        return Favorites.empty() ? std::nullopt : std::optional(World.Below(Favorites.size()));
    }

    // Asking

    static bool Qualifies(const model::Favorite& one, int level) {
        if (level <= 100) {
            return one.Level == level;
        }
        const int number = model::NumberIn(one.File);
        return (one.Level == level - 100 || one.Level == level) &&
               (one.Level <= 100 || (number >= 1 && number <= 5));
    }

    void AskForAll() {
        const int level = World.OneIn(2) ? 100 + World.AnyLevel() : World.IntBelow(8);
        World.Note("the host asks for all of level " + std::to_string(level));
        std::vector<std::size_t> expected;
        for (std::size_t position = 0; position < Favorites.size(); ++position) {
            if (Qualifies(Favorites[position], level)) {
                expected.push_back(position);
            }
        }
        ASSERT_EQ(CountQualifying(*List, level), static_cast<std::int64_t>(expected.size()));
        std::vector<TemplInfo> found(expected.size() + 1);
        EXPECT_EQ(CopySummaries(*List, level, found.data()), static_cast<std::int64_t>(expected.size()));
        for (std::size_t number = 0; number < expected.size(); ++number) {
            ExpectSummary(found[number], expected[number]);
        }
    }

    void ExpectSummary(const TemplInfo& info, std::size_t position) const {
        const model::Favorite& one = Favorites[position];
        EXPECT_EQ(info.Position, static_cast<std::int64_t>(position));
        EXPECT_EQ(info.Standard, one.IsStandard ? 1U : 0U);
        EXPECT_EQ(info.Level, one.Level);
        EXPECT_EQ(std::string(info.Name), one.Name);
        EXPECT_EQ(std::string(info.FilePath),
                  one.Level > 100 ? one.File : World.Favorites.Path() + "\\" + one.File);
        EXPECT_EQ(info.Toolbar, one.OnToolbar ? 1 : 0);
        EXPECT_EQ(info.IconIndex, one.Icon);
    }

    static model::Table OfStandard(int number) {
        switch (number) {
        case 3:
            return FromHost(TableOf(TwoUpDuplexSeed));
        case 4:
            return FromHost(TableOf(BookletSeed));
        case 5:
            return FromHost(TableOf(UpperLeftSeed));
        default:
            return FromHost(TableOf(FreshSeed));
        }
    }

    /// True when the favorite's attributes are there.
    bool Open(model::Favorite& one) {
        one.IsOpened = true;
        if (one.IsStandard && !one.Attributes) {
            one.Attributes = OfStandard(model::NumberIn(one.File));
        }
        return World.Inside.Read(one);
    }

    void AskForTable() {
        const std::optional<std::size_t> position = AnyPosition();
        const int part = World.OneIn(8) ? 6 : World.AnyLevel();
        World.Note("the host asks for part " + std::to_string(part) + " of " +
                   std::to_string(position.value_or(0)));
        const std::size_t start = model::HasPart(part) ? model::PartStart(part) : 0;
        const bool isOfRightSize = !World.OneIn(8);
        const std::size_t size = TableSize - start - (isOfRightSize ? 0 : 1);
        const std::vector<unsigned char> untouched(TableSize, 0x55);
        std::vector<unsigned char> buffer = untouched;
        const bool isCopied = CopyTablePart(*List, static_cast<std::int64_t>(position.value_or(0)), part,
                                            buffer.data(), static_cast<std::int64_t>(size));
        const bool isOpen = position && Open(Favorites[*position]);
        ASSERT_EQ(isCopied, isOpen && model::HasPart(part) && isOfRightSize);
        if (isCopied) {
            const model::TableBytes& table = *Favorites[*position].Attributes;
            EXPECT_TRUE(
                std::equal(table.begin() + static_cast<std::ptrdiff_t>(start), table.end(), buffer.begin()));
        } else {
            EXPECT_EQ(buffer, untouched);
        }
    }

    // Changing

    void AddStandard() {
        model::Favorite one{.IsStandard = true, .Name = World.AnyName(), .Level = 101};
        one.Name = model::HasTilde(one.Name) ? "S" : one.Name;
        one.File = std::to_string(1 + World.Below(7));
        one.Icon = World.IntBelow(model::IconCount);
        one.OnToolbar = World.OneIn(2);
        World.Note("the host adds the standard favorite " + one.File + " called \"" + one.Name + "\"");
        AddStandardFavorite(*List, one.Name.c_str(), std::stoi(one.File), one.Icon, one.OnToolbar);
        Favorites.push_back(one);
        IsWritten();
    }

    void IsWritten() { World.ExpectList(Favorites, Favorites.size()); }

    /// The summary that a host hands in.
    TemplInfo SummaryOf(std::optional<std::size_t> position) {
        TemplInfo info{};
        info.Position = static_cast<std::int64_t>(position.value_or(Favorites.size()));
        info.Level = World.AnyLevel();
        if (position) {
            const model::Favorite& one = Favorites[*position];
            info.Standard = one.IsStandard ? 1 : 0;
            info.Level = World.OneIn(4) ? info.Level : one.Level;
            std::memcpy(info.Name, one.Name.data(), one.Name.size());
        }
        return info;
    }

    NameAnswer AskName(const TemplInfo& info) {
        const std::string proposed =
            info.Standard == 1 ? Sjis(u8"コピー ～ ") + info.Name : std::string(info.Name);
        return ExpectNameDialog(World, Desktop, NamesOf(Favorites), proposed, info.Level, false);
    }

    SaveAsResult Save(std::int32_t mode, TemplInfo& info) {
        return SaveAsFavorite(*List, mode, info, Given->data(), WindowHandle::None, Desktop.Services);
    }

    void SaveNew() {
        World.Note("the host saves as a new favorite");
        Given = World.AnyTable();
        TemplInfo info = SummaryOf(AnyPosition());
        const NameAnswer answer = AskName(info);
        const SaveAsResult result = Save(SaveAsNew, info);
        ASSERT_EQ(result, answer.IsGiven ? SaveAsResult::Saved : SaveAsResult::Cancelled);
        if (!answer.IsGiven) {
            return;
        }
        model::Favorite one{
            .Name = answer.Name, .Level = info.Level, .File = World.Inside.FreeName(answer.Name)};
        one.IsOpened = true;
        one.Attributes = Given;
        World.ExpectFile(one.File, {one.Name, one.Level, Given});
        Favorites.push_back(one);
        IsWritten();
        EXPECT_EQ(info.Position, static_cast<std::int64_t>(Favorites.size()) - 1);
        EXPECT_EQ(info.Standard, 0U);
        EXPECT_EQ(info.IconIndex, model::NewIcon);
        EXPECT_EQ(std::string(info.Name), answer.Name);
    }

    void SaveOver() {
        const std::optional<std::size_t> position = World.OneIn(8) ? std::nullopt : AnyPosition();
        World.Note("the host saves over the favorite at " + std::to_string(position.value_or(99)));
        if (position && World.OneIn(2)) {
            std::vector<unsigned char> table(TableSize);
            const bool isOpen = Open(Favorites[*position]);
            EXPECT_EQ(CopyTablePart(*List, static_cast<std::int64_t>(*position), 1, table.data(), TableSize),
                      isOpen);
        }
        Given = World.AnyTable();
        TemplInfo info = SummaryOf(position);
        const NameAnswer answer = AskName(info);
        const SaveAsResult result = Save(0, info);
        const bool isSaved =
            answer.IsGiven && position && Overwrite(Favorites[*position], answer.Name, info.Level);
        const SaveAsResult ofOk = isSaved ? SaveAsResult::Saved : SaveAsResult::Failed;
        EXPECT_EQ(result, answer.IsGiven ? ofOk : SaveAsResult::Cancelled);
        if (isSaved) {
            EXPECT_EQ(std::string(info.Name), answer.Name);
            IsWritten();
        }
    }

    /// A favorite that cannot be saved is changed all the same, as long as the handle lives.
    bool Overwrite(model::Favorite& one, const std::string& name, int level) {
        one.IsStandard = false;
        one.Name = name;
        one.Level = level;
        if (!one.IsOpened || one.File.starts_with("..")) {
            return false;
        }
        one.Attributes = Given;
        World.ExpectFile(one.File, {name, level, Given});
        return true;
    }

    ModelWorld& World;
    MemoryDesktop Desktop;
    model::Favorites Favorites;
    std::unique_ptr<CPMXTemplUIListDataArray> List;
    model::Table Given;
};

// The conversion of a choice

void Convert(ModelWorld& world) {
    model::Favorites favorites = world.Inside.List;
    const std::string name =
        favorites.empty() || world.OneIn(5) ? world.AnyName() : world.AnyOf(favorites).Name;
    const auto one = std::find_if(favorites.begin(), favorites.end(),
                                  [&](const model::Favorite& other) { return other.Name == name; });
    const bool isFound = one != favorites.end() && world.Inside.Read(*one);
    const int level = isFound && !world.OneIn(3) ? one->Level : world.AnyLevel();
    world.Note("the host asks for level " + std::to_string(level) + " of \"" + name + "\"");
    CPMXTemplUIListHolder holder(ListFile, ".pmt", world.Store.Services);
    ASSERT_TRUE(holder.Open(world.Favorites.Path().c_str()));
    _LM_DOCUMENTLAYOUTTABLE table{};
    ASSERT_EQ(holder.GetAttributeTable(name, level, table),
              isFound && level == one->Level && model::HasPart(level));
    if (isFound && level == one->Level && model::HasPart(level)) {
        model::TableBytes expected{};
        std::copy(one->Attributes->begin() + static_cast<std::ptrdiff_t>(model::PartStart(level)),
                  one->Attributes->end(), expected.begin());
        EXPECT_TRUE(std::equal(expected.begin(), expected.end(), table.Bytes));
    }
}

/// One thing after the other in one folder.
void Use(ModelWorld& world) {
    while (world.Actions() < ActionsInAFolder && world.Inside.List.size() <= MostFavorites &&
           !testing::Test::HasFailure()) {
        switch (world.Below(10)) {
        case 0:
            world.MeddleWithFiles();
            break;
        case 1:
            Convert(world);
            break;
        case 2:
            world.Note("open the register dialog");
            RegisterSession(world).Run();
            break;
        case 3:
            HostSession(world).Run();
            break;
        case 4:
        case 5:
            RunBasicList(world);
            break;
        default:
            RunEditor(world);
            break;
        }
        world.Compare();
    }
}

TEST(DialogModel, AnySequenceOfActionsDoesWhatTheUserExpects) {
    const auto first = static_cast<unsigned>(NumberFromEnvironment("PMX_MODEL_SEED", 1));
    int actions = 0;
    for (unsigned seed = first; actions < ActionCount() && !HasFailure(); ++seed) {
        ModelWorld world(seed);
        try {
            Use(world);
        } catch (const std::exception& error) {
            ADD_FAILURE() << "raised: " << error.what();
        }
        actions += world.Actions();
        if (HasFailure()) {
            ADD_FAILURE() << "after these last of " << world.Actions() << " actions; PMX_MODEL_SEED=" << seed
                          << " does the same again:\n"
                          << world.Trace();
        }
    }
    RecordProperty("actions", actions);
}

} // namespace
} // namespace pmx::test
