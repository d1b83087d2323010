#include "dialogs/choice/sel_level_dlg.h"

#include "platform/text.h"
#include "res/ids.h"

#include "PMXTemplUI.h"

namespace pmx {

namespace {

constexpr ControlId FirstLevel = control::CreateLevelDocument;
constexpr ControlId LastLevel = control::CreateLevelPage;

struct ModeTexts {
    CreateMode Mode;
    ResourceId Title;
    ResourceId Prompt;
};

constexpr ModeTexts TextsOfModes[] = {
    {CreateMode::New, text::CreateTitleNew, text::CreatePromptNew},
    {CreateMode::SaveAs, text::CreateTitleGivenLevel, text::CreatePromptGivenLevel},
    {CreateMode::Copy, text::CreateTitleGivenLevel, text::CreatePromptGivenLevel},
    {CreateMode::Overwrite, text::CreateTitleGivenLevel, text::CreatePromptGivenLevel},
};

bool IsLevelGiven(CreateMode mode) {
    return mode == CreateMode::SaveAs || mode == CreateMode::Copy || mode == CreateMode::Overwrite;
}

} // namespace

CPMXTemplUISelLevelDlg::CPMXTemplUISelLevelDlg(const CPMXTemplUIListDataArray* list, WindowHandle parent,
                                               const DialogServices& services)
    : CPmxDlg(dialog::CreateFavorite, parent, services), List(list) {}

void CPMXTemplUISelLevelDlg::SetLevel(std::int32_t level) {
    if (level >= PMX_LEVEL_DOCUMENT && level <= PMX_LEVEL_PAGE) {
        LevelIndex = level - PMX_LEVEL_DOCUMENT;
    }
}

bool CPMXTemplUISelLevelDlg::OnInitDialog() {
    ShowMode();
    LimitName(control::CreateName);
    Name = TrimmedName(Name);
    Window().SetText(control::CreateName, Name);
    Window().SetRadio(FirstLevel, LastLevel, LevelIndex);
    return true;
}

void CPMXTemplUISelLevelDlg::ShowMode() const {
    std::string title;
    std::string prompt;
    for (const ModeTexts& texts : TextsOfModes) {
        if (texts.Mode == Mode) {
            title = StringOf(texts.Title);
            prompt = StringOf(texts.Prompt);
        }
    }
    Window().SetTitle(title);
    Window().SetText(control::CreatePrompt, prompt);
    const bool mayChoose = !IsLevelGiven(Mode);
    Window().Enable(control::CreateLevelLabel, mayChoose);
    Window().Enable(control::CreateLevelLine, mayChoose);
    for (ControlId level = FirstLevel; level <= LastLevel; ++level) {
        Window().Enable(level, mayChoose);
    }
}

void CPMXTemplUISelLevelDlg::OnOK() {
    LevelIndex = Window().RadioOf(FirstLevel, LastLevel);
    Name = NameIn(control::CreateName);
    if (!IsAcceptable()) {
        return;
    }
    if (LevelIndex >= 0) {
        ResultLevel = static_cast<std::uint32_t>(PMX_LEVEL_DOCUMENT + LevelIndex);
    }
    EndDialog(CodeOk);
}

bool CPMXTemplUISelLevelDlg::IsAcceptable() {
    if (Name.empty()) {
        Warn(text::CreateNameMissing);
        return false;
    }
    if (HasSeparator(Name)) {
        Warn(text::NameHasSeparator);
        return false;
    }
    return MayTakeName();
}

bool CPMXTemplUISelLevelDlg::MayTakeName() {
    const std::int64_t count = List != nullptr ? List->GetSize() : 0;
    for (std::int64_t index = 0; index < count; ++index) {
        const CPMXTemplUIListData& record = List->At(index);
        if (record.GetDeleteFlag() == 1 || !EqualIgnoringCase(record.GetName(), Name)) {
            continue;
        }
        if (!MayUseTakenName()) {
            return false;
        }
    }
    return true;
}

/// Refuses a name that another favorite has, or asks where the mode allows it.
bool CPMXTemplUISelLevelDlg::MayUseTakenName() {
    if (SourceIsStandard != 1 && Mode == CreateMode::Overwrite) {
        return AskYesNo(text::CreateAskOverwrite);
    }
    if (SourceIsStandard == 1 || Mode == CreateMode::New || IsLevelGiven(Mode)) {
        Warn(text::CreateNameExists);
    }
    return false;
}

void CPMXTemplUISelLevelDlg::OnCancel() {
    Name.clear();
    EndDialog(CodeCancel);
}

} // namespace pmx
