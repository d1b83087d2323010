#include "host/main_window.h"

#include "host/document_commands.h"
#include "host/print_attributes.h"
#include "host/resource.h"
#include "host/screen.h"
#include "host/settings_text.h"
#include "host/text.h"

#include <algorithm>
#include <cstring>
#include <utility>

#include <windowsx.h>

namespace pmx::host {

namespace {

// Pixels at 96 dots per inch.
constexpr int PaneWidth = 412;
constexpr int SummaryHeight = 330;
constexpr int HeadingHeight = 24;
constexpr int Inset = 6;

HICON LoadHostIcon() {
    return LoadIconW(GetModuleHandleW(nullptr), MAKEINTRESOURCEW(IDI_HOST));
}

/// The font of dialogs and lists on a screen of that resolution.
HFONT MakeMessageFont(int resolution) {
    NONCLIENTMETRICSW metrics{};
    metrics.cbSize = sizeof metrics;
    SystemParametersInfoForDpi(SPI_GETNONCLIENTMETRICS, sizeof metrics, &metrics, 0,
                               static_cast<UINT>(resolution));
    return CreateFontIndirectW(&metrics.lfMessageFont);
}

/// Where the window opens: as large as is comfortable, and inside the desktop.
RECT FirstPlace() {
    constexpr int Width = 1180;
    constexpr int Height = 860;
    RECT desktop{};
    SystemParametersInfoW(SPI_GETWORKAREA, 0, &desktop, 0);
    const int resolution = static_cast<int>(GetDpiForSystem());
    const int width = std::min<int>(Scaled(Width, resolution), desktop.right - desktop.left);
    const int height = std::min<int>(Scaled(Height, resolution), desktop.bottom - desktop.top);
    const LONG left = desktop.left + (desktop.right - desktop.left - width) / 2;
    const LONG top = desktop.top + (desktop.bottom - desktop.top - height) / 2;
    return {left, top, left + width, top + height};
}

int HeightOf(HWND window) {
    RECT place{};
    GetWindowRect(window, &place);
    return place.bottom - place.top;
}

void CopyName(TemplInfo& info, const std::string& name) {
    const std::size_t length = std::min(name.size(), sizeof info.Name - 1);
    std::memcpy(info.Name, name.data(), length);
    info.Name[length] = '\0';
}

} // namespace

MainWindow::MainWindow(const std::wstring& favoritesFolder) : Store(ToNarrow(favoritesFolder)) {
    if (!Store.IsOpen()) {
        return;
    }
    Create({.ClassName = L"PmxSampleHost",
            .Title = ResourceText(IDS_TITLE).c_str(),
            .Style = WS_OVERLAPPEDWINDOW | WS_CLIPCHILDREN,
            .Place = FirstPlace(),
            .MenuOrId = LoadMenuW(ResourceModule(), MAKEINTRESOURCEW(IDR_MENU)),
            .Icon = LoadHostIcon()});
}

std::optional<LRESULT> MainWindow::Answer(UINT message, WPARAM wParam, LPARAM lParam) {
    switch (message) {
    case WM_CREATE:
        OnCreated();
        return 0;
    case WM_SIZE:
        ArrangeChildren();
        return 0;
    case WM_DPICHANGED:
        OnScreenChanged(*reinterpret_cast<const RECT*>(lParam));
        return 0;
    case WM_COMMAND:
        OnCommand(LOWORD(wParam));
        return 0;
    case WM_SETFOCUS:
        SetFocus(List->Get());
        return 0;
    case WM_NOTIFY:
        return OnNotify(*reinterpret_cast<NMHDR*>(lParam));
    case WM_INITMENUPOPUP:
        OnMenuOpened(reinterpret_cast<HMENU>(wParam));
        return 0;
    case WM_DESTROY:
        PostQuitMessage(0);
        return 0;
    default:
        return std::nullopt;
    }
}

void MainWindow::OnCreated() {
    Toolbar.emplace(Get());
    Pages.emplace(Get(), IDC_SHEETS);
    CreateFavoritesPane();
    Status = CreateWindowExW(0, STATUSCLASSNAMEW, nullptr, WS_CHILD | WS_VISIBLE | SBARS_SIZEGRIP, 0, 0, 0, 0,
                             Get(), reinterpret_cast<HMENU>(static_cast<INT_PTR>(IDC_STATUS)),
                             GetModuleHandleW(nullptr), nullptr);
    AdaptToScreen();
    ShowFavorites();
    ShowDocument();
}

/// Takes the icons, fonts and lengths of the screen that the window is on.
void MainWindow::AdaptToScreen() {
    Resolution = ResolutionOf(Get());
    ImageList icons = LoadFavoriteIcons(Resolution);
    Font font(MakeMessageFont(Resolution));
    Toolbar->SetIcons(icons.get());
    List->SetIcons(icons.get());
    List->Fit(font.get(), Resolution);
    Summary->Fit(font.get(), Resolution);
    for (const HWND window : {ListHeading, SummaryHeading, Status}) {
        SetWindowFont(window, font.get(), TRUE);
    }
    Icons = std::move(icons); // the former ones only now, when nothing shows them any more
    MessageFont = std::move(font);
    ArrangeChildren();
}

/// The window has come to a screen of another resolution, where `place` suits it.
void MainWindow::OnScreenChanged(const RECT& place) {
    SetWindowPos(Get(), nullptr, place.left, place.top, place.right - place.left, place.bottom - place.top,
                 SWP_NOZORDER | SWP_NOACTIVATE);
    AdaptToScreen();
    ShowFavorites();
}

void MainWindow::CreateFavoritesPane() {
    CreateHeading(IDS_LIST_HEADING, ListHeading);
    List.emplace(
        Get(), IDC_LIST,
        std::vector<ListView::Column>{
            {IDS_COLUMN_NAME, 174}, {IDS_COLUMN_LEVEL, 66}, {IDS_COLUMN_KIND, 84}, {IDS_COLUMN_TOOLBAR, 72}});
    CreateHeading(IDS_SUMMARY_HEADING, SummaryHeading);
    Summary.emplace(Get(), IDC_SUMMARY,
                    std::vector<ListView::Column>{{IDS_COLUMN_SETTING, 96}, {IDS_COLUMN_VALUE, 298}});
}

void MainWindow::CreateHeading(int textId, HWND& heading) {
    heading = CreateWindowExW(0, WC_STATICW, ResourceText(static_cast<unsigned>(textId)).c_str(),
                              WS_CHILD | WS_VISIBLE | SS_CENTERIMAGE, 0, 0, 0, 0, Get(), nullptr,
                              GetModuleHandleW(nullptr), nullptr);
}

void MainWindow::ArrangeChildren() {
    if (Status == nullptr) {
        return;
    }
    SendMessageW(Toolbar->Get(), TB_AUTOSIZE, 0, 0);
    SendMessageW(Status, WM_SIZE, 0, 0);
    RECT client{};
    GetClientRect(Get(), &client);
    const int top = HeightOf(Toolbar->Get());
    const int bottom = client.bottom - HeightOf(Status);
    const int inset = Scaled(Inset, Resolution);
    const int heading = Scaled(HeadingHeight, Resolution);
    const int pane = Scaled(PaneWidth, Resolution);
    const int left = std::max<int>(0, client.right - pane);
    const int summaryTop = std::max(top + heading, bottom - Scaled(SummaryHeight, Resolution));
    const int inside = pane - 2 * inset;
    MoveWindow(Pages->Get(), 0, top, left, bottom - top, TRUE);
    MoveWindow(ListHeading, left + inset, top, inside, heading, TRUE);
    MoveWindow(List->Get(), left + inset, top + heading, inside, summaryTop - top - heading, TRUE);
    MoveWindow(SummaryHeading, left + inset, summaryTop, inside, heading, TRUE);
    MoveWindow(Summary->Get(), left + inset, summaryTop + heading, inside,
               bottom - summaryTop - heading - inset, TRUE);
    List->FitLastColumn();
    Summary->FitLastColumn();
    const int parts[] = {client.right / 3, client.right * 3 / 5, -1};
    SendMessageW(Status, SB_SETPARTS, std::size(parts), reinterpret_cast<LPARAM>(parts));
}

void MainWindow::OnCommand(int id) {
    static constexpr Command Commands[] = {
        {IDM_SAVE_AS, &MainWindow::SaveAsNew}, {IDM_OVERWRITE, &MainWindow::SaveOver},
        {IDM_EXIT, &MainWindow::Exit},         {IDM_REGISTER, &MainWindow::Register},
        {IDM_EDITOR, &MainWindow::ShowEditor}, {IDM_BASIC_LIST, &MainWindow::ShowBasicList},
        {IDM_REAPPLY, &MainWindow::Reapply},   {IDM_ADD_STANDARD, &MainWindow::AddStandards},
        {IDM_ABOUT, &MainWindow::ShowAbout},   {IDM_ATTRIBUTES, &MainWindow::ShowAttributes},
    };
    if (const TemplInfo* favorite = Toolbar->FavoriteOf(id)) {
        return ApplyByName(*favorite);
    }
    const auto* command = std::find_if(std::begin(Commands), std::end(Commands),
                                       [id](const Command& each) { return each.Id == id; });
    if (command != std::end(Commands)) {
        return (this->*command->Run)();
    }
    RunDocumentCommand(id);
}

bool MainWindow::RunDocumentCommand(int id) {
    for (const auto& command : DocumentCommands()) {
        if (command.Id == id) {
            command.Set(Table);
            ShowChange();
            return true;
        }
    }
    return false;
}

/// Shows that the settings are no longer those of a favorite.
void MainWindow::ShowChange() {
    IsChanged = true;
    Toolbar->MarkApplied(-1);
    ShowDocument();
}

std::optional<LRESULT> MainWindow::OnNotify(NMHDR& header) {
    if (header.code == TTN_GETDISPINFOW) {
        Toolbar->AnswerTooltip(reinterpret_cast<NMTTDISPINFOW&>(header));
        return 0;
    }
    if (header.idFrom == IDC_LIST && (header.code == NM_DBLCLK || header.code == NM_RETURN)) {
        ApplySelected();
        return 0;
    }
    return std::nullopt;
}

void MainWindow::OnMenuOpened(HMENU menu) {
    for (const auto& command : DocumentCommands()) {
        CheckMenuItem(menu, static_cast<UINT>(command.Id),
                      MF_BYCOMMAND | (command.IsSet(Table) ? MF_CHECKED : MF_UNCHECKED));
    }
    const TemplInfo* applied = FindApplied();
    EnableMenuItem(menu, IDM_REAPPLY, MF_BYCOMMAND | (applied != nullptr ? MF_ENABLED : MF_GRAYED));
    EnableMenuItem(menu, IDM_OVERWRITE,
                   MF_BYCOMMAND | (applied != nullptr && !IsStandard(*applied) ? MF_ENABLED : MF_GRAYED));
}

/// Fetches the settings with the open list.
void MainWindow::ApplyFavorite(const TemplInfo& favorite) {
    ShowApplied(favorite, Store.Apply(favorite, Table));
}

/// Fetches the settings by the favorite's name, as a host does that remembers no more of it; they come afresh
/// from the file. A standard favorite has none.
void MainWindow::ApplyByName(const TemplInfo& favorite) {
    if (IsStandard(favorite) || !Store.IsOnlyOneOfItsName(favorite)) {
        return ApplyFavorite(favorite);
    }
    ShowApplied(favorite, Store.ApplyByName(favorite.Name, favorite.Level, Table));
}

void MainWindow::ShowApplied(const TemplInfo& favorite, bool succeeded) {
    const TemplInfo chosen = favorite; // What is shown, the given favorite with it, changes underneath.
    if (succeeded) {
        SetApplied(chosen);
    }
    ShowFavorites();
    ShowDocument();
    if (!succeeded) {
        Complain(FormatText(IDS_ERROR_APPLY, ToWide(chosen.Name).c_str()));
    }
}

void MainWindow::ApplySelected() {
    const auto row = static_cast<std::size_t>(List->Selected());
    if (row < Store.All().size()) {
        ApplyFavorite(Store.All()[row]);
    }
}

void MainWindow::Reapply() {
    if (const TemplInfo* applied = FindApplied()) {
        return ApplyByName(*applied);
    }
    Complain(ResourceText(IDS_ERROR_NOTHING_APPLIED));
}

void MainWindow::SaveAsNew() {
    TemplInfo info{};
    if (const TemplInfo* applied = FindApplied()) {
        info = *applied;
    } else {
        CopyName(info, ToNarrow(ResourceText(IDS_NEW_FAVORITE)));
    }
    info.Level = PMX_LEVEL_DOCUMENT; // The whole table is saved, whichever favorite it began with.
    const Outcome outcome = Store.SaveAsNew(info, Table, Get());
    const TemplInfo* saved = Store.FindAt(info.Position); // It has a file now; the call does not say which.
    if (outcome == Outcome::Accepted && saved != nullptr) {
        SetApplied(*saved);
    }
    Report(outcome);
}

void MainWindow::SaveOver() {
    const TemplInfo* applied = FindApplied();
    if (applied == nullptr || IsStandard(*applied)) {
        return Complain(
            ResourceText(applied == nullptr ? IDS_ERROR_NOTHING_APPLIED : IDS_ERROR_OVERWRITE_STANDARD));
    }
    TemplInfo info = *applied;
    const Outcome outcome = Store.SaveOver(info, Table, Get());
    if (outcome == Outcome::Accepted) {
        SetApplied(info);
    }
    Report(outcome);
}

void MainWindow::Register() {
    Report(Store.ShowRegister(Table, Get()));
}

void MainWindow::ShowEditor() {
    Report(Store.ShowEditor(Get()));
}

void MainWindow::ShowBasicList() {
    Report(Store.ShowBasicList(Get()));
}

void MainWindow::AddStandards() {
    Store.AddStandardFavorites();
    ShowFavorites();
}

/// The same dialog that the favorites editor shows for a favorite, here for the document itself.
void MainWindow::ShowAttributes() {
    switch (ShowPrintAttributes(Table, Get())) {
    case Outcome::Accepted:
        return ShowChange();
    case Outcome::Failed:
        return Complain(ResourceText(IDS_ERROR_ATTRIBUTES));
    default:
        return;
    }
}

void MainWindow::ShowAbout() {
    MessageBoxW(Get(), ResourceText(IDS_ABOUT).c_str(), ResourceText(IDS_TITLE).c_str(), MB_ICONINFORMATION);
}

void MainWindow::Exit() {
    SendMessageW(Get(), WM_CLOSE, 0, 0);
}

void MainWindow::Report(Outcome outcome) {
    ShowFavorites();
    ShowDocument();
    if (outcome == Outcome::Failed) {
        MessageBeep(MB_ICONEXCLAMATION);
        SetStatus(0, ResourceText(IDS_STATUS_FAILED));
    }
}

void MainWindow::Complain(const std::wstring& text) {
    MessageBoxW(Get(), text.c_str(), ResourceText(IDS_TITLE).c_str(), MB_ICONEXCLAMATION);
}

void MainWindow::SetApplied(const TemplInfo& favorite) {
    LastApplied = Applied{favorite.FilePath, favorite.Level, favorite.Position};
    IsChanged = false;
}

/// The favorite that was applied last, as the list holds it now; of several the one at its former place.
const TemplInfo* MainWindow::FindApplied() const {
    if (!LastApplied) {
        return nullptr;
    }
    const TemplInfo* found = nullptr;
    for (const auto& favorite : Store.All()) {
        const bool same = favorite.FilePath == LastApplied->FilePath && favorite.Level == LastApplied->Level;
        if (same && (found == nullptr || favorite.Position == LastApplied->Position)) {
            found = &favorite;
        }
    }
    return found;
}

void MainWindow::ShowFavorites() {
    const TemplInfo* applied = FindApplied();
    SendMessageW(List->Get(), WM_SETREDRAW, FALSE, 0);
    List->Clear();
    int row = 0;
    int appliedRow = -1;
    for (const auto& favorite : Store.All()) {
        const auto level = static_cast<unsigned>(LevelOf(favorite));
        List->AddRow({ToWide(favorite.Name), ResourceText(IDS_LEVEL_1 + level - 1),
                      ResourceText(favorite.Standard != 0 ? IDS_KIND_STANDARD : IDS_KIND_USER),
                      favorite.Toolbar != 0 ? ResourceText(IDS_ON_TOOLBAR) : std::wstring()},
                     static_cast<int>(favorite.IconIndex));
        appliedRow = &favorite == applied ? row : appliedRow;
        ++row;
    }
    List->Select(appliedRow);
    SendMessageW(List->Get(), WM_SETREDRAW, TRUE, 0);
    InvalidateRect(List->Get(), nullptr, TRUE);
    Toolbar->Fill(Store.All());
    Toolbar->MarkApplied(applied != nullptr && !IsChanged ? applied->Position : -1);
}

void MainWindow::ShowDocument() {
    const auto layout = sample::LayOut(Table, SampleDocument());
    Pages->Show(layout);
    Summary->Clear();
    for (const auto& [name, value] : DescribeSettings(Table)) {
        Summary->AddRow({name, value});
    }
    ShowStatus(layout.Sheets.size());
}

void MainWindow::ShowStatus(std::size_t sheets) {
    const TemplInfo* applied = FindApplied();
    const std::wstring texts[] = {
        applied != nullptr
            ? FormatText(IsChanged ? IDS_STATUS_CHANGED : IDS_STATUS_APPLIED, ToWide(applied->Name).c_str())
            : ResourceText(IDS_STATUS_NONE),
        FormatText(IDS_STATUS_SHEETS, SampleDocument().PageCount, static_cast<int>(sheets)),
        ToWide(Store.FolderPath())};
    for (WPARAM part = 0; part < std::size(texts); ++part) {
        SetStatus(part, texts[part]);
    }
}

void MainWindow::SetStatus(WPARAM part, const std::wstring& text) {
    SendMessageW(Status, SB_SETTEXTW, part, reinterpret_cast<LPARAM>(text.c_str()));
}

} // namespace pmx::host
