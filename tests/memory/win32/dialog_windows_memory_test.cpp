// Real dialogs while there is no memory: each allocation in their handlers and window procedures is refused
// in turn. Nothing is raised through the system, and the dialog ends with a stated result.
#include "frame/dialog_exports.h"
#include "memory/counting_new.h"
#include "platform/win32/handles.h"
#include "platform/win32/name_edit.h"
#include "res/ids.h"
#include "safety/changing_operations.h"
#include "support/favorite_folder.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <deque>
#include <functional>
#include <limits>
#include <map>
#include <new>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include <windows.h>

namespace pmx::test {
namespace {

/// Runs real dialogs. Their user is a list of steps for each template, taken one by one between the messages
/// of the dialogs' own thread; after the last the dialog is closed. What the user does needs no memory.
class SteppedDialogs final : public DialogRunner {
public:
    using Step = std::function<void(HWND dialog)>;

    SteppedDialogs() : Hook(SetWindowsHookExW(WH_GETMESSAGE, &Watch, nullptr, GetCurrentThreadId())) {
        Current = this;
    }
    ~SteppedDialogs() override {
        UnhookWindowsHookEx(Hook);
        Current = nullptr;
    }
    SteppedDialogs(const SteppedDialogs&) = delete;
    SteppedDialogs& operator=(const SteppedDialogs&) = delete;

    /// What the users of the dialogs of a template do, in the order in which the dialogs open.
    std::map<ResourceId, std::deque<std::vector<Step>>> Users;

    std::optional<int> Run(ResourceId dialogTemplate, WindowHandle parent, DialogEvents& events) override {
        std::optional<Watched> watched;
        {
            const MemoryScope scope(false);
            auto& users = Users[dialogTemplate];
            watched.emplace(events, *this);
            if (!users.empty()) {
                watched->Steps.assign(users.front().begin(), users.front().end());
                users.pop_front();
            }
        }
        return SystemDialogRunner().Run(dialogTemplate, parent, *watched);
    }

private:
    /// Passes events on, and tells when the dialog opens and closes.
    class Watched final : public DialogEvents {
    public:
        Watched(DialogEvents& events, SteppedDialogs& owner) : Events(events), Owner(owner) {}

        std::deque<Step> Steps;
        HWND Window = nullptr;

        bool OnOpened(DialogWindow& window) override {
            {
                const MemoryScope scope(false);
                Window = win32::ToSystem(window.Handle());
                Owner.Open.push_back(this);
                Owner.Continue();
            }
            return Events.OnOpened(window);
        }
        void OnEvent(const ControlEvent& event) override { Events.OnEvent(event); }
        void OnHelpAsked(const HelpRequest& request) override { Events.OnHelpAsked(request); }
        void OnOkAsked() override { Events.OnOkAsked(); }
        void OnCancelAsked() override { Events.OnCancelAsked(); }
        void OnClosed() override {
            Events.OnClosed();
            Owner.Open.pop_back();
        }

    private:
        DialogEvents& Events;
        SteppedDialogs& Owner;
    };

    static LRESULT CALLBACK Watch(int code, WPARAM wParam, LPARAM lParam) {
        const MSG& message = *reinterpret_cast<const MSG*>(lParam);
        if (code == HC_ACTION && wParam == PM_REMOVE && message.hwnd == nullptr &&
            message.message == NextStep && message.wParam == Current->Number) {
            Current->TakeStep();
        }
        return CallNextHookEx(nullptr, code, wParam, lParam);
    }

    /// The next step comes after everything that is posted already. Earlier requests for it lapse.
    void Continue() { PostThreadMessageW(GetCurrentThreadId(), NextStep, ++Number, 0); }

    void TakeStep() {
        if (Open.empty()) {
            return;
        }
        const MemoryScope scope(false);
        Watched& dialog = *Open.back();
        if (dialog.Steps.empty()) {
            PostMessageW(dialog.Window, WM_CLOSE, 0, 0);
        } else {
            const Step step = std::move(dialog.Steps.front());
            dialog.Steps.pop_front();
            step(dialog.Window);
        }
        Continue();
    }

    static constexpr UINT NextStep = WM_APP + 77;
    static inline SteppedDialogs* Current = nullptr;

    HHOOK Hook;
    WPARAM Number = 0;
    std::vector<Watched*> Open; ///< the topmost last
};

using Step = SteppedDialogs::Step;

Step Press(ControlId button) {
    return [button](HWND dialog) {
        PostMessageW(dialog, WM_COMMAND, MAKEWPARAM(button, BN_CLICKED),
                     reinterpret_cast<LPARAM>(GetDlgItem(dialog, button)));
    };
}

Step GoTo(ControlId control) {
    return [control](HWND dialog) {
        PostMessageW(dialog, WM_NEXTDLGCTL, reinterpret_cast<WPARAM>(GetDlgItem(dialog, control)), TRUE);
    };
}

Step Type(ControlId edit, const wchar_t* text) {
    return [edit, text](HWND dialog) {
        for (const wchar_t* letter = text; *letter != 0; ++letter) {
            PostMessageW(GetDlgItem(dialog, edit), WM_CHAR, *letter, 1);
        }
    };
}

Step PressKey(ControlId list, WPARAM key) {
    return [list, key](HWND dialog) { PostMessageW(GetDlgItem(dialog, list), WM_KEYDOWN, key, 1); };
}

/// Every so manyth allocation is refused: real windows take their time. PMX_MEMORY_STEP asks for another
/// number.
std::size_t StepOf(std::size_t usual) {
    const char* const wanted = std::getenv("PMX_MEMORY_STEP");
    return wanted != nullptr ? static_cast<std::size_t>(std::atoi(wanted)) : usual;
}

/// How a dialog is used, and what it means to take away.
struct Use {
    Operation Meant;
    std::map<ResourceId, std::deque<std::vector<Step>>> Users;
    std::function<std::int64_t(World&, const DialogServices&, WindowHandle owner)> Show;
    std::size_t UsualStep;
};

void PrintTo(const Use& use, std::ostream* out) {
    *out << use.Meant.Name;
}

std::map<ResourceId, std::deque<std::vector<Step>>> UsersOfTheEditor(ControlId last) {
    return {{dialog::Editor,
             {{Press(control::EditorNew), PressKey(control::EditorList, VK_DOWN),
               PressKey(control::EditorList, VK_UP), GoTo(control::EditorName),
               Type(control::EditorName, L"Renamed"), GoTo(control::EditorList), Press(control::EditorImport),
               Press(control::EditorExport), Press(control::ChangeIcon), Press(control::EditorDown),
               PressKey(control::EditorList, VK_DELETE), Press(last)}}},
            {dialog::CreateFavorite, {{Type(control::CreateName, L"Fresh"), Press(control::Ok)}}},
            {dialog::IconPicker, {{PressKey(control::PickerIcons, VK_RIGHT), Press(control::Ok)}}}};
}

std::int64_t ShowTheEditor(World& world, const DialogServices& services, WindowHandle owner) {
    world.Desktop.ChosenFile = world.Outside.Path("x.pmt");
    return ShowEditor(world.Folder.Path().c_str(), owner, services, world.Store.Services);
}

std::vector<Use> Uses() {
    return {
        {{"EditorOk", nullptr, {"a.pmt"}, {}, true}, UsersOfTheEditor(control::Ok), ShowTheEditor, 47},
        {{"EditorCancel", nullptr, {}, {}, false}, UsersOfTheEditor(control::Cancel), ShowTheEditor, 61},
        {{"BasicList", nullptr, {}, {}, false},
         {{dialog::BasicList,
           {{GoTo(control::BasicName), Type(control::BasicName, L"Renamed"), GoTo(control::BasicList),
             Press(control::ChangeIcon), Press(control::BasicDown), Press(control::BasicDelete),
             Press(control::Ok)}}},
          {dialog::IconPicker, {{Press(control::Ok)}}}},
         [](World& world, const DialogServices& services, WindowHandle owner) {
             return ShowBasicList(world.Folder.Path().c_str(), ListFile, ".pmt", owner, services,
                                  world.Store.Services);
         },
         13},
        {{"Register", nullptr, {}, {}, false},
         {{dialog::RegisterFavorite,
           {{Press(control::RegisterChangeIcon), Type(control::RegisterName, L"New"), Press(control::Ok)}}},
          {dialog::IconPicker, {{PressKey(control::PickerIcons, VK_RIGHT), Press(control::Ok)}}}},
         [](World& world, const DialogServices& services, WindowHandle owner) {
             return ShowRegisterDialog(world.Folder.Path().c_str(), ListFile, ".pmt", world.Table.Bytes, 1,
                                       owner, services, world.Store.Services);
         },
         13}};
}

/// How a run ended: the dialog export's result, none when lack of memory passed on.
struct Ended {
    std::optional<std::int64_t> Result;
    bool WasFelt = false;
};

class DialogWindowsMemoryTest : public testing::TestWithParam<Use> {
protected:
    DialogWindowsMemoryTest()
        : Host(CreateWindowExW(0, L"Static", L"Host", WS_OVERLAPPEDWINDOW | WS_VISIBLE, 0, 0, 240, 160,
                               nullptr, nullptr, GetModuleHandleW(nullptr), nullptr)) {}
    ~DialogWindowsMemoryTest() override { DestroyWindow(Host); }

    Ended Run(World& world, std::size_t granted, std::size_t refused) const {
        SteppedDialogs dialogs;
        dialogs.Users = GetParam().Users;
        const DialogServices& quiet = world.Desktop.Services;
        const DialogServices services{quiet.Strings,      dialogs,    quiet.Messages, quiet.FileChoice,
                                      SystemImageLists(), quiet.Help, quiet.Libraries};
        Ended ended;
        const NoMemory lack(granted, refused);
        try {
            ended.Result = GetParam().Show(world, services, win32::FromSystem(Host));
        } catch (const std::bad_alloc&) {
            ended.Result.reset();
        }
        ended.WasFelt = lack.WasFelt();
        return ended;
    }

    void ExpectNoWindowLeft() const {
        std::size_t count = 0;
        EnumThreadWindows(
            GetCurrentThreadId(),
            [](HWND window, LPARAM number) -> BOOL {
                *reinterpret_cast<std::size_t*>(number) += IsWindowVisible(window) ? 1 : 0;
                return TRUE;
            },
            reinterpret_cast<LPARAM>(&count));
        EXPECT_EQ(count, 1U) << "only the host's window is to be there";
        EXPECT_TRUE(IsWindowEnabled(Host));
    }

    HWND Host;
};

TEST_P(DialogWindowsMemoryTest, ADialogThatLacksMemoryEndsAndLosesNothing) {
    constexpr std::size_t All = std::numeric_limits<std::size_t>::max();
    Outcome outcome;
    {
        World world;
        outcome.Before = world.Content();
        const bool isCancelled = std::string(GetParam().Meant.Name) == "EditorCancel";
        EXPECT_EQ(Run(world, All, 0).Result, isCancelled ? 1 : 0);
        outcome.After = world.Content();
        EXPECT_EQ(outcome.Before.List == outcome.After.List, isCancelled) << "the steps are taken";
    }
    for (const std::size_t refused : {std::size_t{1}, All}) {
        bool wasFelt = true;
        for (std::size_t granted = 0; wasFelt; granted += StepOf(GetParam().UsualStep)) {
            World world;
            const Ended ended = Run(world, granted, refused);
            wasFelt = ended.WasFelt;
            EXPECT_TRUE(ended.Result || wasFelt);
            ExpectNoWindowLeft();
            ExpectNothingLost(GetParam().Meant, outcome, world.Content());
            if (refused == 1) {
                EXPECT_EQ(world.LeftBehind(), std::vector<std::string>()) << "temporary files";
            }
            ASSERT_FALSE(HasFailure())
                << "allocation " << granted + 1 << (refused == 1 ? "" : " and all later");
        }
    }
}

/// Sends a message to an edit box with the first, the second, … allocation of its handling refused.
void RefuseEachAllocationOf(HWND box, int& failures, UINT message, WPARAM wParam, const wchar_t* text) {
    bool wasFelt = true;
    for (std::size_t granted = 0; wasFelt; ++granted) {
        SCOPED_TRACE(testing::Message() << "message " << message << ", granted " << granted);
        SetWindowTextW(box, L"a long text that is no short string any more");
        SendMessageW(box, EM_SETSEL, 3, 7);
        failures = 0;
        bool isRaised = false;
        {
            const NoMemory lack(granted, 1);
            try {
                SendMessageW(box, message, wParam, reinterpret_cast<LPARAM>(text));
            } catch (const std::bad_alloc&) {
                isRaised = true;
            }
            wasFelt = lack.WasFelt();
        }
        EXPECT_FALSE(isRaised);
        EXPECT_EQ(failures, wasFelt ? 1 : 0);
        ASSERT_LT(granted, 100U);
    }
    EXPECT_GT(GetWindowTextLengthW(box), 0);
}

TEST(NameEditMemoryTest, LackOfMemoryIsToldAndNotRaisedThroughTheSystem) {
    const HWND box = CreateWindowExW(0, L"Edit", L"", WS_POPUP | ES_AUTOHSCROLL, 0, 0, 240, 20, nullptr,
                                     nullptr, GetModuleHandleW(nullptr), nullptr);
    int failures = 0;
    win32::NameEdit edit(box, [&failures] { ++failures; });
    edit.SetLimit(60);
    const wchar_t* const text = L"another text that is long enough";
    RefuseEachAllocationOf(box, failures, WM_CHAR, L'x', nullptr);
    RefuseEachAllocationOf(box, failures, WM_SETTEXT, 0, text);
    RefuseEachAllocationOf(box, failures, EM_REPLACESEL, TRUE, text);
    DestroyWindow(box);
}

INSTANTIATE_TEST_SUITE_P(Dialogs, DialogWindowsMemoryTest, testing::ValuesIn(Uses()),
                         [](const testing::TestParamInfo<Use>& parameter) {
                             return std::string(parameter.param.Meant.Name);
                         });

} // namespace
} // namespace pmx::test
