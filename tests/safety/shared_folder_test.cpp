// Random sequences of what two or three programs do with one folder, beside a plain model.
#include "safety/shared_list_model.h"
#include "store/list_file.h"
#include "store/list_holder.h"
#include "support/fake_host.h"
#include "support/fake_services.h"
#include "support/temp_folder.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <cstdlib>
#include <memory>
#include <optional>
#include <random>
#include <set>
#include <string>
#include <vector>

namespace pmx::test {
namespace {

using shared::Entries;
using shared::Entry;

constexpr const char* ListFile = "PmxTempleList.ini";

/// What an environment variable says, or what is usual.
int Setting(const char* variable, int usual) {
    const char* const wanted = std::getenv(variable);
    return wanted != nullptr ? std::atoi(wanted) : usual;
}

#ifdef _WIN32
constexpr int UsualSequences = 40; // files are slow there
#else
constexpr int UsualSequences = 2'500;
#endif

enum class Does { Open, Append, Register, SaveAs, Rename, ChangeIcon, Move, Delete, EditorOk, BasicOk };

constexpr std::array<const char*, 10> Names = {"open",        "append", "register", "save as",   "rename",
                                               "change icon", "move",   "delete",   "editor OK", "basic OK"};

struct Action {
    std::size_t Program;
    Does What;
    unsigned Which; ///< one of several, taken modulo their number
    unsigned How;
};

using Actions = std::vector<Action>;

/// A favorite in the memory of a program.
struct Held {
    Entry What;
    bool IsDeleted = false;
};

/// A program, and what the model says of it.
struct Program {
    std::unique_ptr<CPMXTemplUIListHolder> Holder; ///< none before it has opened the folder
    Entries Base;
    std::vector<Held> Records;
    std::vector<std::size_t> Rows; ///< in the order of a dialog
};

class World {
public:
    World() {
        const Entry unreadable{.What = Entry::Kind::Unreadable, .Name = "0~x~1~1~14~x.pmt~7"};
        InPlace = {{.Name = "One", .File = "One.pmt"},
                   {.What = Entry::Kind::Standard, .Name = "S", .File = "1"},
                   unreadable,
                   {.Name = "Two", .File = "Two.pmt"},
                   {.Name = "Alike", .File = "One.pmt"},
                   {.Name = "Three", .File = "Three.pmt"}};
        Written = shared::SectionOf(InPlace, InPlace.size());
        Folder.Write(ListFile, Written);
        for (const char* const name : {"One.pmt", "Two.pmt", "Three.pmt"}) {
            Folder.Write(name, "content");
            Files.insert(name);
        }
    }

    /// What is wrong after these actions; empty when nothing is.
    std::string Run(const Actions& actions) {
        std::string wrong;
        for (std::size_t number = 0; number < actions.size() && wrong.empty(); ++number) {
            Do(actions[number]);
            wrong = Difference(actions[number].Program);
        }
        return wrong;
    }

private:
    void Do(const Action& action) {
        Program& program = Programs.at(action.Program);
        if (action.What == Does::Open) {
            Open(program);
        } else if (program.Holder != nullptr) {
            Change(program, action);
        }
    }

    void Open(Program& program) {
        program = {};
        program.Holder = std::make_unique<CPMXTemplUIListHolder>(nullptr, nullptr, Fakes.Services);
        IsOpened = program.Holder->Open(Folder.Path().c_str());
        program.Base = InPlace;
        for (const Entry& entry : InPlace) {
            if (entry.What != Entry::Kind::Unreadable) {
                program.Rows.push_back(program.Records.size());
                program.Records.push_back({entry});
            }
        }
    }

    void Change(Program& program, const Action& action) {
        switch (action.What) {
        case Does::Open:
            break;
        case Does::Append:
            Append(program, action);
            break;
        case Does::Register:
        case Does::SaveAs:
            Store(program, action);
            break;
        case Does::EditorOk:
            EditorOk(program);
            break;
        case Does::BasicOk:
            BasicOk(program);
            break;
        default:
            ChangeRow(program, action);
        }
    }

    // What hosts do

    void Append(Program& program, const Action& action) {
        const Entry entry{.What = Entry::Kind::Standard,
                          .Name = action.Which % 2 == 0 ? "S" : "T",
                          .Icon = static_cast<int>(action.How % 3),
                          .File = "1"};
        program.Holder->GetList().Add(MakeRecord(entry));
        program.Rows.push_back(program.Records.size());
        program.Records.push_back({entry});
        program.Holder->GetList().WriteListFile();
        Write(program, InOrder(program), program.Records.size());
    }

    void Store(Program& program, const Action& action) {
        static const std::array<std::string, 4> Some = {"One", "New", "Two", "Other"};
        const std::string& name = Some.at(action.Which % Some.size());
        if (program.Holder->GetList().CheckName(name) != NameUse::Unused) {
            return;
        }
        program.Holder->StoreFavorite(name, 1, TableOf(FreshSeed).Bytes);
        std::string file = name + ".pmt";
        for (int number = 1; Files.contains(file); ++number) {
            file = name + "-" + std::to_string(number) + ".pmt";
        }
        Files.insert(file);
        program.Rows.push_back(program.Records.size());
        program.Records.push_back({{.Name = name, .File = file}});
        if (action.What == Does::SaveAs) {
            program.Holder->GetList().WriteListFile();
            Write(program, InOrder(program), program.Records.size());
        } else {
            program.Holder->SaveList();
            Write(program, InOrder(program), program.Records.size());
            DeleteFiles(program);
        }
    }

    // What users do in dialogs

    void ChangeRow(Program& program, const Action& action) {
        if (program.Rows.empty()) {
            return;
        }
        const std::size_t row = action.Which % program.Rows.size();
        const std::size_t index = program.Rows[row];
        Held& held = program.Records[index];
        CPMXTemplUIListData& record = *program.Holder->GetAt(static_cast<std::int64_t>(index));
        const bool isUser = held.What.What == Entry::Kind::User;
        if (action.What == Does::Rename && isUser) {
            held.What.Name = "Name " + std::to_string(action.How % 9);
            record.SetName(held.What.Name);
        } else if (action.What == Does::ChangeIcon) {
            held.What.Icon = static_cast<int>(action.How % 60);
            record.SetIconIndex(held.What.Icon);
        } else if (action.What == Does::Move) {
            const std::size_t to = action.How % program.Rows.size();
            program.Rows.erase(program.Rows.begin() + static_cast<std::ptrdiff_t>(row));
            program.Rows.insert(program.Rows.begin() + static_cast<std::ptrdiff_t>(to), index);
        } else if (action.What == Does::Delete && isUser) {
            held.IsDeleted = true;
            record.SetDeleteFlag(1);
            program.Rows.erase(program.Rows.begin() + static_cast<std::ptrdiff_t>(row));
        }
    }

    void EditorOk(Program& program) {
        CPMXTemplUIListDataArray& list = program.Holder->GetList();
        if (WriteRows(program)) {
            list.DeleteFilesOfDeleted(list.GetRecords());
        }
        Write(program, InRows(program), program.Rows.size());
        DeleteFiles(program);
        program = {};
    }

    void BasicOk(Program& program) {
        WriteRows(program);
        Write(program, InRows(program), program.Rows.size());
        program = {};
    }

    static bool WriteRows(const Program& program) {
        std::vector<const CPMXTemplUIListData*> rows;
        for (const std::size_t index : program.Rows) {
            rows.push_back(program.Holder->GetAt(static_cast<std::int64_t>(index)));
        }
        return program.Holder->GetList().WriteListFile(rows, static_cast<std::int64_t>(rows.size()));
    }

    static std::unique_ptr<CPMXTemplUIListData> MakeRecord(const Entry& entry) {
        auto record = std::make_unique<CPMXTemplUIListData>();
        record->SetStandard(1);
        record->SetName(entry.Name);
        record->SetLevel(101);
        record->SetIconIndex(entry.Icon);
        record->SetFileName(entry.File);
        return record;
    }

    // What the model says

    static Entries InOrder(const Program& program) {
        Entries entries;
        for (const Held& held : program.Records) {
            if (!held.IsDeleted) {
                entries.push_back(held.What);
            }
        }
        return entries;
    }

    static Entries InRows(const Program& program) {
        Entries entries;
        for (const std::size_t index : program.Rows) {
            entries.push_back(program.Records[index].What);
        }
        return entries;
    }

    static bool IsSame(const Entries& one, const Entries& other) {
        return std::equal(
            one.begin(), one.end(), other.begin(), other.end(),
            [](const Entry& left, const Entry& right) { return left.Value() == right.Value(); });
    }

    void Write(Program& program, const Entries& mine, std::size_t count) {
        const bool isMerged = !IsSame(program.Base, InPlace);
        InPlace = isMerged ? shared::Merged(program.Base, mine, InPlace) : mine;
        Written = shared::SectionOf(InPlace, isMerged ? InPlace.size() : count);
        program.Base = mine;
    }

    void DeleteFiles(const Program& program) {
        for (const Held& held : program.Records) {
            const auto isUsed = [&](const Entry& entry) { return entry.Id() == held.What.Id(); };
            const Entries mine = InOrder(program);
            if (held.IsDeleted && std::none_of(InPlace.begin(), InPlace.end(), isUsed) &&
                std::none_of(mine.begin(), mine.end(), isUsed)) {
                Files.erase(held.What.File);
            }
        }
    }

    std::string Difference(std::size_t which) const {
        if (!IsOpened) {
            return "the folder was not opened";
        }
        const std::string list = Folder.Read(ListFile);
        if (list != Written) {
            return "the list is\n" + list + "instead of\n" + Written;
        }
        std::vector<std::string> names(Files.begin(), Files.end());
        names.emplace_back(ListFile);
        std::sort(names.begin(), names.end());
        if (Folder.Names() != names) {
            return "the files are others";
        }
        const Program& program = Programs.at(which);
        for (std::size_t index = 0; index < program.Records.size(); ++index) {
            const CPMXTemplUIListData& record = *program.Holder->GetAt(static_cast<std::int64_t>(index));
            if (FormatListValue(record) != program.Records[index].What.Value()) {
                return "a program's own list has changed";
            }
        }
        return {};
    }

    FakeHost Host;
    FakeServices Fakes;
    TempFolder Folder{"shared"};
    std::array<Program, 3> Programs;
    bool IsOpened = true;
    Entries InPlace;     ///< of the list file
    std::string Written; ///< its bytes
    std::set<std::string> Files;
};

std::string Trace(const Actions& actions) {
    std::string text;
    for (const Action& action : actions) {
        text += "program " + std::to_string(action.Program) + ": " +
                Names.at(static_cast<std::size_t>(action.What)) + " " + std::to_string(action.Which) + " " +
                std::to_string(action.How) + "\n";
    }
    return text;
}

/// Leaves out what is not needed for something to be wrong.
Actions Shrunk(Actions actions) {
    for (std::size_t left = actions.size(); left-- > 0;) {
        Actions fewer = actions;
        fewer.erase(fewer.begin() + static_cast<std::ptrdiff_t>(left));
        if (!World().Run(fewer).empty()) {
            actions.swap(fewer);
            left = actions.size(); // what was needed before may not be any more
        }
    }
    return actions;
}

Actions AnyActions(std::mt19937& random) {
    const std::size_t programs = 2 + random() % 2;
    Actions actions;
    for (std::size_t program = 0; program < programs; ++program) {
        actions.push_back({program, Does::Open, 0, 0});
    }
    for (std::size_t left = 4 + random() % 16; left > 0; --left) {
        const auto what = static_cast<Does>(random() % Names.size());
        const auto which = static_cast<unsigned>(random());
        actions.push_back({random() % programs, what, which, static_cast<unsigned>(random())});
    }
    return actions;
}

TEST(SharedFolder, WhatSeveralProgramsDoToOneFolderComesTogetherAsTheModelSays) {
    const int seed = Setting("PMX_MODEL_SEED", 932);
    const int sequences = Setting("PMX_MODEL_STEPS", UsualSequences);
    std::mt19937 random(static_cast<unsigned>(seed));
    for (int sequence = 0; sequence < sequences; ++sequence) {
        const Actions actions = AnyActions(random);
        if (!World().Run(actions).empty()) {
            const Actions fewer = Shrunk(actions);
            FAIL() << World().Run(fewer) << "\nwith PMX_MODEL_SEED=" << seed << " after\n" << Trace(fewer);
        }
    }
}

} // namespace
} // namespace pmx::test
