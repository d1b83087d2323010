#include "PMXTemplUIVersion.h"
#include "commands.h"
#include "terminal.h"

#include "platform/text.h"
#include "store/favorite_files.h"
#include "store/list_file.h"

#include <CLI/CLI.hpp>

#include <algorithm>
#include <cstdint>
#include <exception>
#include <functional>
#include <iterator>
#include <string>
#include <string_view>
#include <vector>

#ifdef _WIN32
#include "platform/win32/wide_text.h"
#endif

namespace pmx::tool {

namespace {

/// What the command line says, in UTF-8.
struct Arguments {
    std::string Folder;
    std::string ListFile = DefaultListFileName;
    std::string Extension = DefaultExtension;
    std::string Name;
    std::string Text; ///< another name, a file, or a word of a few
    std::int64_t Number = 0;
    std::vector<std::string> Files;
    bool AsJson = false;
    bool IsDryRun = false;

    /// A text that the code page cannot say; it would turn into another one. Null when there is none.
    const std::string* Unsayable() const {
        const auto isUnsayable = [](const std::string& text) { return ToUtf8(FromUtf8(text)) != text; };
        for (const std::string* const text : {&Folder, &ListFile, &Extension, &Name, &Text}) {
            if (isUnsayable(*text)) {
                return text;
            }
        }
        const auto file = std::find_if(Files.begin(), Files.end(), isUnsayable);
        return file == Files.end() ? nullptr : &*file;
    }

    FolderChoice Choice() const { return {FromUtf8(Folder), FromUtf8(ListFile), FromUtf8(Extension)}; }
};

OnClash ClashRule(std::string_view word) {
    return word == "rename" ? OnClash::Rename : word == "replace" ? OnClash::Replace : OnClash::Skip;
}

using Command = std::function<int(const Arguments&)>;

/// The commands with their arguments, and the one that the command line asks for.
class CommandLine {
public:
    CommandLine() {
        App.require_subcommand(1);
        App.set_version_flag("--version", "pmxfav " PMX_VERSION);
        App.set_help_all_flag("--help-all", "Print the help of all commands");
        AddReading();
        AddRepair();
        AddChanging();
        AddMoving();
    }

    int Run(std::vector<std::string> texts) {
        std::reverse(texts.begin(), texts.end()); // as the parser takes them
        try {
            App.parse(std::move(texts));
        } catch (const CLI::CallForHelp&) {
            Print(App.help());
            return Fine;
        } catch (const CLI::CallForAllHelp&) {
            Print(App.help("", CLI::AppFormatMode::All));
            return Fine;
        } catch (const CLI::CallForVersion& version) {
            Print(std::string(version.what()) + "\n");
            return Fine;
        } catch (const CLI::ParseError& error) {
            Say(error.what());
            Say("pmxfav --help-all tells how to call it");
            return WrongCall;
        }
        if (const std::string* const text = Given.Unsayable()) {
            Say("the code page of favorites has not every character of this: " + *text);
            return WrongCall;
        }
        return Chosen(Given);
    }

private:
    CLI::App* Add(const char* name, const char* description, Command command) {
        CLI::App* const added = App.add_subcommand(name, description);
        added->add_option("FOLDER", Given.Folder, "The favorites folder")->required();
        added->add_option("--list", Given.ListFile, "Name of the list file")->capture_default_str();
        added->add_option("--extension", Given.Extension, "Extension of favorite files")
            ->capture_default_str();
        added->callback([this, run = std::move(command)] { Chosen = run; });
        return added;
    }

    CLI::App* AddNamed(const char* name, const char* description, Command command) {
        CLI::App* const added = Add(name, description, std::move(command));
        added->add_option("NAME", Given.Name, "The favorite's name")->required();
        return added;
    }

    void AddJson(CLI::App* command) { command->add_flag("--json", Given.AsJson, "Print the result as JSON"); }

    void AddReading() {
        AddJson(Add("list", "List the favorites in order",
                    [](const Arguments& given) { return ListFavorites(given.Choice(), given.AsJson); }));
        AddJson(AddNamed("show", "Show one favorite and its file", [](const Arguments& given) {
            return ShowFavorite(given.Choice(), FromUtf8(given.Name), given.AsJson);
        }));
        AddJson(Add("check", "Tell everything that is wrong or will be lost",
                    [](const Arguments& given) { return CheckFolder(given.Choice(), given.AsJson); }));
        CLI::App* const diff = Add("diff", "Compare what two favorites set", [](const Arguments& given) {
            return DiffFavorites(given.Choice(), FromUtf8(given.Name), FromUtf8(given.Text), given.AsJson);
        });
        diff->add_option("NAME1", Given.Name, "The name of a favorite")->required();
        diff->add_option("NAME2", Given.Text, "The name of the other")->required();
        AddJson(diff);
    }

    void AddRepair() {
        CLI::App* const repair =
            Add("repair", "Mend what can be mended without asking", [](const Arguments& given) {
                return RepairFolder(given.Choice(), given.IsDryRun, given.AsJson);
            });
        repair->add_flag("--dry-run", Given.IsDryRun, "Tell what would be done, and change nothing");
        AddJson(repair);
    }

    void AddChanging() {
        AddNamed("rename", "Give a favorite another name",
                 [](const Arguments& given) {
                     return RenameFavorite(given.Choice(), FromUtf8(given.Name), FromUtf8(given.Text));
                 })
            ->add_option("NEWNAME", Given.Text, "The new name")
            ->required();
        AddNamed("move", "Move a favorite to another position",
                 [](const Arguments& given) {
                     return MoveFavorite(given.Choice(), FromUtf8(given.Name), given.Number);
                 })
            ->add_option("POSITION", Given.Number, "The position, from 1")
            ->required();
        AddNamed("remove", "Remove a favorite and its file",
                 [](const Arguments& given) { return RemoveFavorite(given.Choice(), FromUtf8(given.Name)); });
        AddNamed("toolbar", "Put a favorite on the toolbar or take it off",
                 [](const Arguments& given) {
                     return SetToolbar(given.Choice(), FromUtf8(given.Name), given.Text == "on");
                 })
            ->add_option("STATE", Given.Text, "on or off")
            ->required()
            ->check(CLI::IsMember({"on", "off"}));
        AddNamed("icon", "Give a favorite another icon",
                 [](const Arguments& given) {
                     return SetIcon(given.Choice(), FromUtf8(given.Name), given.Number);
                 })
            ->add_option("ICON", Given.Number, "The number of the icon")
            ->required();
    }

    void AddMoving() {
        AddNamed("export", "Write a favorite to a file",
                 [](const Arguments& given) {
                     return Export(given.Choice(), FromUtf8(given.Name), FromUtf8(given.Text));
                 })
            ->add_option("FILE", Given.Text, "The file, which is replaced")
            ->required();
        CLI::App* const import = Add("import", "Take files over as favorites", [](const Arguments& given) {
            std::vector<std::string> paths;
            std::transform(given.Files.begin(), given.Files.end(), std::back_inserter(paths),
                           [](const std::string& path) { return FromUtf8(path); });
            return Import(given.Choice(), paths, ClashRule(given.Text));
        });
        import->add_option("FILE", Given.Files, "The files")->required();
        import
            ->add_option("--on-clash", Given.Text,
                         "What to do when a favorite has the name; skip unless given")
            ->check(CLI::IsMember({"skip", "rename", "replace"}));
    }

    CLI::App App{"Looks after the favorites of a folder.", "pmxfav"};
    Arguments Given;
    Command Chosen;
};

int RunTool(std::vector<std::string> texts) {
    try {
        return CommandLine().Run(std::move(texts));
    } catch (const std::exception& error) {
        Say(std::string("stopped: ") + error.what());
        return Found;
    }
}

} // namespace

} // namespace pmx::tool

#ifdef _WIN32
int wmain(int count, wchar_t** texts) {
    std::vector<std::string> arguments;
    for (int index = 1; index < count; ++index) {
        arguments.push_back(pmx::win32::ToNarrow(texts[index], 65001)); // UTF-8
    }
    return pmx::tool::RunTool(std::move(arguments));
}
#else
int main(int count, char** texts) {
    return pmx::tool::RunTool({texts + 1, texts + count});
}
#endif
