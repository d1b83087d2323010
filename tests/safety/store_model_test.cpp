// Long random sequences of operations on a holder of favorites, compared with a plain model all along.
#include "store/levels.h"
#include "store/list_file.h"
#include "store/list_holder.h"
#include "support/fake_host.h"
#include "support/fake_services.h"
#include "support/sjis.h"
#include "support/temp_folder.h"

#include <gmock/gmock.h>

#include <algorithm>
#include <array>
#include <cstdlib>
#include <cstring>
#include <map>
#include <optional>
#include <random>
#include <string>
#include <vector>

namespace pmx::test {
namespace {

/// How many operations; PMX_MODEL_STEPS asks for another number.
int Steps() {
#ifdef _WIN32
    constexpr int Usual = 5'000; // files are slow there
#else
    constexpr int Usual = 100'000;
#endif
    const char* const wanted = std::getenv("PMX_MODEL_STEPS");
    return wanted != nullptr ? std::atoi(wanted) : Usual;
}

constexpr std::size_t MostFavorites = 40;

struct ModelFile {
    _LM_DOCUMENTLAYOUTTABLE Table{};
    std::int32_t Level = 1;
    std::string Name;
};

struct ModelFavorite {
    bool IsStandard = false;
    std::string Name;
    std::int32_t Level = 1;
    bool OnToolbar = false;
    std::int32_t Icon = 14;
    std::string File;
    bool IsDeleted = false;
    bool IsLoaded = false;

    std::string ListValue() const {
        return std::string(IsStandard ? "1~" : "0~") + Name + '~' + std::to_string(Level) + '~' +
               (OnToolbar ? "1~" : "0~") + std::to_string(Icon) + '~' + File;
    }
};

std::size_t StartOf(std::int32_t level) {
    constexpr std::array<std::size_t, 5> Starts = {0, 82, 126, 150, 2221};
    return Starts.at(static_cast<std::size_t>(level - 1));
}

/// Small letters for the single-byte ones; in code page 932 a second byte is none.
std::string SmallLetters(const std::string& text) {
    std::string small = text;
    for (std::size_t at = 0; at < small.size(); ++at) {
        const auto byte = static_cast<unsigned char>(small[at]);
        if ((byte >= 0x81 && byte <= 0x9F) || (byte >= 0xE0 && byte <= 0xFC)) {
            ++at;
        } else if (byte >= 'A' && byte <= 'Z') {
            small[at] = static_cast<char>(byte + ('a' - 'A'));
        }
    }
    return small;
}

class StoreModel : public testing::Test {
protected:
    StoreModel() { Reopen(); }
    ~StoreModel() override { Holder.reset(); }

    std::size_t Below(std::size_t limit) { return Random() % limit; }

    std::string AnyName() {
        static const std::array<std::string, 16> Names = {
            "A",          "a",          "AB",         "aB",          "x y",
            "Template",   "Template-1", Sjis(u8"ミ"), Sjis(u8"ア"),  Sjis(u8"ヂ"),
            Sjis(u8"表"), Sjis(u8"Ａ"), Sjis(u8"ァ"), Sjis(u8"ｱｲｳ"), Sjis(u8"ソ×能"),
            "a=b;[c]\"d'"};
        return Names.at(Below(Names.size())) + (Below(3) == 0 ? std::to_string(Below(20)) : "");
    }

    std::optional<std::size_t> AnyPosition() {
        return Model.empty() ? std::nullopt : std::optional(Below(Model.size()));
    }

    // What the model says

    ModelFavorite* Find(const std::string& name) {
        const auto found = std::find_if(Model.begin(), Model.end(),
                                        [&](const ModelFavorite& one) { return one.Name == name; });
        return found == Model.end() ? nullptr : &*found;
    }

    NameUse UseOf(const std::string& name) {
        for (const ModelFavorite& one : Model) {
            if (SmallLetters(one.Name) == SmallLetters(name)) {
                return one.IsStandard ? NameUse::StandardFavorite : NameUse::UserFavorite;
            }
        }
        return NameUse::Unused;
    }

    /// As the system sees it: on Windows whatever the case.
    bool HasFile(const std::string& name) const {
#ifdef _WIN32
        return std::any_of(Files.begin(), Files.end(),
                           [&](const auto& file) { return SmallLetters(file.first) == SmallLetters(name); });
#else
        return Files.contains(name);
#endif
    }

    std::string FreeFile(const std::string& name) {
        std::string base;
        for (const char letter : name) {
            base += letter == '"' ? '=' : letter;
        }
        std::string candidate = base + ".pmt";
        for (int number = 1; HasFile(candidate); ++number) {
            candidate = base + "-" + std::to_string(number) + ".pmt";
        }
        return candidate;
    }

    /// Loads the favorite's file unless it is loaded; false when there is none.
    bool Load(ModelFavorite& one) {
        one.IsLoaded = one.IsLoaded || Files.contains(one.File);
        return one.IsLoaded;
    }

    // The operations, on both

    void Reopen() {
        Holder = std::make_unique<CPMXTemplUIListHolder>(nullptr, nullptr, Fakes.Services);
        ASSERT_TRUE(Holder->Open(Folder.Path().c_str()));
        for (ModelFavorite& one : Model) {
            one.IsLoaded = false;
        }
        ExpectSameList();
    }

    void AddStandardOne() {
        ModelFavorite one{.IsStandard = true,
                          .Name = AnyName(),
                          .Level = 101,
                          .OnToolbar = Below(2) == 0,
                          .Icon = static_cast<std::int32_t>(Below(60)),
                          .File = std::to_string(1 + Below(5))};
        auto record = std::make_unique<CPMXTemplUIListData>();
        record->SetStandard(1);
        record->SetName(one.Name);
        record->SetLevel(one.Level);
        record->SetToolbar(one.OnToolbar ? 1 : 0);
        record->SetIconIndex(one.Icon);
        record->SetFileName(one.File);
        Holder->GetList().Add(std::move(record));
        Model.push_back(one);
    }

    void Store() {
        const std::string name = AnyName();
        const auto level = static_cast<std::int32_t>(1 + Below(5));
        const _LM_DOCUMENTLAYOUTTABLE part = TableOf(static_cast<unsigned char>(Random()));
        EXPECT_EQ(Holder->StoreFavorite(name, level, part.Bytes), StoreInModel(name, level, part)) << name;
    }

    bool StoreInModel(const std::string& name, std::int32_t level, const _LM_DOCUMENTLAYOUTTABLE& part) {
        ModelFavorite* one = Find(name);
        ModelFile file{.Table = TableOf(FreshSeed), .Level = level, .Name = name};
        if (UseOf(name) == NameUse::Unused) {
            one = &Model.emplace_back();
            one->File = FreeFile(name);
        } else {
            if (one == nullptr || !Load(*one)) {
                return false;
            }
            file.Table = Files.at(one->File).Table;
        }
        std::memcpy(file.Table.Bytes + StartOf(level), part.Bytes, TableSize - StartOf(level));
        Files[one->File] = file;
        *one = {.Name = name, .Level = level, .File = one->File, .IsLoaded = true};
        return true;
    }

    void Rename() {
        if (const auto position = AnyPosition()) {
            ModelFavorite& one = Model.at(*position);
            one.Name = AnyName();
            EXPECT_EQ(Holder->RenameAt(static_cast<std::int64_t>(*position), one.Name), Load(one));
        }
    }

    void Delete() {
        if (const auto position = AnyPosition()) {
            Model.at(*position).IsDeleted = true;
            Holder->GetAt(static_cast<std::int64_t>(*position))->SetDeleteFlag(1);
        }
    }

    void Decorate() {
        if (const auto position = AnyPosition()) {
            ModelFavorite& one = Model.at(*position);
            one.OnToolbar = Below(2) == 0;
            one.Icon = static_cast<std::int32_t>(Below(60));
            CPMXTemplUIListData& record = *Holder->GetAt(static_cast<std::int64_t>(*position));
            record.SetToolbar(one.OnToolbar ? 1 : 0);
            record.SetIconIndex(one.Icon);
        }
    }

    void AskForNames() {
        const std::string name = AnyName();
        EXPECT_EQ(Holder->GetList().CheckName(name), UseOf(name)) << name;
        const ModelFavorite* const one = Find(name);
        EXPECT_EQ(Holder->FindByName(name), one == nullptr ? nullptr : Holder->GetAt(one - Model.data()));
        if (const auto position = AnyPosition()) {
            bool isUnique = true;
            for (std::size_t other = 0; other < Model.size(); ++other) {
                isUnique &= other == *position || SmallLetters(Model[other].Name) != SmallLetters(name);
            }
            EXPECT_EQ(Holder->IsNewNameUnique(static_cast<std::int64_t>(*position), name), isUnique);
        }
    }

    void AskForTable() {
        const std::string name = AnyName();
        ModelFavorite* const one = Find(name);
        const auto level =
            one != nullptr && Below(4) != 0 ? one->Level : static_cast<std::int32_t>(1 + Below(5));
        _LM_DOCUMENTLAYOUTTABLE table{};
        const bool isThere = Holder->GetAttributeTable(name, level, table);
        const bool isLoaded = one != nullptr && Load(*one);
        ASSERT_EQ(isThere, isLoaded && one->Level == level && level <= PMX_LEVEL_PAGE) << name;
        if (isThere) {
            const std::size_t start = StartOf(level);
            EXPECT_EQ(std::memcmp(table.Bytes, Files.at(one->File).Table.Bytes + start, TableSize - start),
                      0);
        }
    }

    /// Saves, and opens the folder anew.
    void Save() {
        EXPECT_TRUE(Holder->SaveList());
        std::vector<ModelFavorite> kept;
        for (const ModelFavorite& one : Model) {
            if (!one.IsDeleted) {
                kept.push_back(one);
            }
        }
        for (const ModelFavorite& one : Model) {
            // On any system a file that differs in case alone may be the same one.
            const bool isUsed = std::any_of(kept.begin(), kept.end(), [&](const ModelFavorite& other) {
                return SmallLetters(other.File) == SmallLetters(one.File);
            });
            if (one.IsDeleted && !one.IsStandard && !isUsed) {
                Files.erase(one.File);
            }
        }
        Model = kept;
        Reopen();
        ExpectSameFolder();
    }

    void ExpectSameList() {
        ASSERT_EQ(Holder->GetCount(), static_cast<std::int64_t>(Model.size()));
        for (std::size_t position = 0; position < Model.size(); ++position) {
            ASSERT_EQ(FormatListValue(*Holder->GetAt(static_cast<std::int64_t>(position))),
                      Model[position].ListValue());
        }
    }

    void ExpectSameFolder() {
        std::vector<std::string> names = {"PmxTempleList.ini"};
        for (const auto& [name, file] : Files) {
            names.push_back(name);
        }
        ASSERT_THAT(Folder.Names(), testing::UnorderedElementsAreArray(names));
        if (!Files.empty()) {
            const auto& [name, file] = *std::next(Files.begin(), static_cast<long>(Below(Files.size())));
            const HostContent content = FakeHost::ReadFavorite(Folder, name);
            EXPECT_EQ(content.Name, file.Name);
            EXPECT_EQ(content.Level, file.Level);
            EXPECT_TRUE(SameTable(content.Table, file.Table));
        }
    }

    void Step() {
        // Once in a while many go, so that the list does not grow for ever.
        if (Model.size() >= MostFavorites) {
            for (std::size_t count = 0; count < MostFavorites; ++count) {
                Delete();
            }
            Save();
            return;
        }
        static constexpr std::array<void (StoreModel::*)(), 12> Operations = {
            &StoreModel::AddStandardOne, &StoreModel::Store,       &StoreModel::Store,
            &StoreModel::Rename,         &StoreModel::Rename,      &StoreModel::Delete,
            &StoreModel::Decorate,       &StoreModel::AskForNames, &StoreModel::AskForNames,
            &StoreModel::AskForTable,    &StoreModel::AskForTable, &StoreModel::AskForTable};
        if (Below(40) == 0) {
            Save();
        } else {
            (this->*Operations.at(Below(Operations.size())))();
        }
    }

    FakeHost Host;
    FakeServices Fakes;
    TempFolder Folder{"model"};
    std::unique_ptr<CPMXTemplUIListHolder> Holder;
    std::vector<ModelFavorite> Model;
    std::map<std::string, ModelFile> Files;
    std::mt19937 Random{20'932};
};

TEST_F(StoreModel, AnySequenceOfOperationsDoesWhatTheModelDoes) {
    for (int step = 0; step < Steps() && !HasFailure(); ++step) {
        SCOPED_TRACE(step);
        Step();
        if (step % 8 == 0) {
            ExpectSameList();
        }
    }
}

} // namespace
} // namespace pmx::test
