#include "safety/list_session.h"

#include "dialogs/base/pmx_dlg.h"
#include "res/ids.h"
#include "support/sjis.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <functional>

namespace pmx::test {

namespace {

constexpr int MostGestures = 70;

} // namespace

ListSession::ListSession(ModelWorld& world, const Controls& controls)
    : World(world), Records(world.Inside.List), Ids(controls) {
    FakeAttributeDialog::PutInto(Desktop.Libraries);
    for (model::Favorite& record : Records) {
        record.Shown = record.Name;
        Rows.push_back(Rows.size());
    }
    if (!Rows.empty()) {
        Mark = 0;
        IsSelected = true;
    }
}

void ListSession::Run() {
    HasIconButton = HasIconButtonWithoutRows();
    Refresh(0);
    Desktop.Dialogs.OnOpened(Template(), [this](MemoryUser& user) {
        User = &user;
        Drive();
    });
    const std::int64_t result = Show(); // before the question what is expected
    EXPECT_EQ(result, IsAccepted ? 0 : 1);
}

void ListSession::Drive() {
    Compare();
    CompareRows();
    for (int left = World.IntBelow(MostGestures); left > 0 && !IsOver; --left) {
        Gesture();
        Compare();
        if (testing::Test::HasFailure()) {
            break;
        }
    }
    while (!IsOver && !testing::Test::HasFailure()) {
        CompareRows();
        switch (World.Below(4)) {
        case 0:
            PressCancel();
            break;
        case 1:
            PressEnter();
            break;
        default:
            PressOk();
            break;
        }
    }
    if (User->IsOpen()) {
        EXPECT_FALSE(IsOver) << "the dialog is to be over";
        User->Escape();
    }
}

void ListSession::Gesture() {
    using Self = ListSession;
    static constexpr std::array<void (Self::*)(), 15> Gestures = {
        &Self::TypeName,     &Self::TypeName,     &Self::ClickRow,   &Self::ClickRow,   &Self::ClickRow,
        &Self::PressListKey, &Self::PressListKey, &Self::MoveUp,     &Self::MoveDown,   &Self::MoveByKey,
        &Self::Drag,         &Self::TypeLetter,   &Self::OwnGesture, &Self::OwnGesture, &Self::OwnGesture};
    const std::size_t number = World.Below(Gestures.size() * 2);
    if (number < Gestures.size()) {
        (this->*Gestures.at(number))();
    } else if (number < Gestures.size() + 2) {
        Press("delete", Ids.Delete, HasChangeButtons, [this] { RemoveRow(); });
    } else if (number < Gestures.size() + 4) {
        Press("change icon", control::ChangeIcon, HasIconButton, [this] { ChangeIcon(); });
    } else if (number == Gestures.size() + 4) {
        ClickBesideRows();
    } else if (number == Gestures.size() + 5 && World.OneIn(6)) {
        PressEnter();
    } else if (number == Gestures.size() + 6) {
        CompareRows();
    } else {
        OwnGesture();
    }
}

// The list

model::Favorite* ListSession::At(int row) {
    const bool isThere = row >= 0 && row < static_cast<int>(Rows.size());
    return isThere ? &Records[Rows[static_cast<std::size_t>(row)]] : nullptr;
}

/// The controls show the favorite of the row.
void ListSession::Refresh(int row) {
    const model::Favorite* const one = At(row);
    if (one == nullptr) {
        return;
    }
    ShowName(*one);
    HasChangeButtons = !one->IsStandard;
    HasUp = row != 0;
    HasDown = row != static_cast<int>(Rows.size()) - 1;
    HasIconButton = MayHaveIcon(*one);
    const int icon = HasIconButton ? one->Icon : 0;
    if (icon >= 0 && icon < model::IconCount) {
        IconShown = icon;
    }
}

void ListSession::Append(const model::Favorite& favorite) {
    Rows.push_back(Records.size());
    Records.push_back(favorite);
    Records.back().Shown = favorite.Name;
    HasDown = HasDown || Mark >= 0;
}

void ListSession::RemoveRow() {
    const int row = Current();
    model::Favorite* const one = At(row);
    if (one == nullptr || one->IsStandard) {
        return;
    }
    one->IsDeleted = true;
    Rows.erase(Rows.begin() + row);
    if (Rows.empty()) {
        Box.clear();
        Untouched.clear();
        Mark = -1;
        IsSelected = false;
        HasChangeButtons = HasUp = HasDown = false;
        HasIconButton = HasIconButtonWithoutRows();
        return;
    }
    Mark = std::max(row - 1, 0);
    Refresh(Mark);
}

bool ListSession::IsNameOfAnother(std::size_t index, const std::string& name) const {
    for (std::size_t other = 0; other < Records.size(); ++other) {
        if (other != index && model::SameName(Records[other].Name, name)) {
            return true;
        }
    }
    return false;
}

// The name box

ListSession::Leaving ListSession::LeaveBox() {
    if (!InBox) {
        return Leaving::Quiet;
    }
    const Leaving left = TakeName();
    InBox = left == Leaving::Refused;
    if (left == Leaving::NotTaken) {
        ShowName(*At(EditRow));
    }
    return left;
}

ListSession::Leaving ListSession::TakeName() {
    model::Favorite* const one = At(EditRow);
    if (one == nullptr) {
        return Leaving::Quiet;
    }
    if (Box == Untouched) {
        return Leaving::Quiet;
    }
    const std::string name = model::Trimmed(Box);
    if (name.empty()) {
        ShowName(*one);
        return Leaving::Quiet;
    }
    if (model::HasTilde(name)) {
        return Refuse(text::NameHasSeparator);
    }
    if (IsNameOfAnother(Rows[static_cast<std::size_t>(EditRow)], name)) {
        return Refuse(text::RenameNameExists);
    }
    const Leaving taken = Rename(*one, name);
    if (taken != Leaving::NotTaken) {
        ShowName(*one);
    }
    return taken;
}

ListSession::Leaving ListSession::Refuse(ResourceId id) {
    Expect(id);
    Mark = EditRow;
    IsSelected = true;
    return Leaving::Refused;
}

void ListSession::Expect(ResourceId id, MessageIcon icon) {
    World.Note("(message " + std::to_string(id) + ")");
    Desktop.Messages.Expect(id, icon);
}

// Gestures

bool ListSession::Reaches(bool byKey) {
    const Leaving left = LeaveBox();
    // A message that comes while the mouse button is down takes the click away.
    return left == Leaving::Quiet || (left != Leaving::Refused && byKey);
}

void ListSession::TypeName() {
    if (!HasChangeButtons) {
        EXPECT_FALSE(User->IsEnabled(Ids.Name));
        return;
    }
    const std::string name = World.AnyName();
    const bool isPasted = World.OneIn(5);
    World.Note(std::string(isPasted ? "paste" : "type") + " the name \"" + name + "\"");
    if (!InBox) {
        InBox = true;
        EditRow = Mark;
    }
    if (isPasted) {
        User->TabTo(Ids.Name);
        User->Paste(name);
        Box = name.empty() ? Box : model::Cut(name);
    } else {
        User->Fill(Ids.Name, name);
        Box = model::Typed(name);
    }
}

bool ListSession::Select(int row) {
    if (LeaveBox() == Leaving::Refused) {
        return false;
    }
    Mark = row;
    IsSelected = true;
    Refresh(row);
    return true;
}

void ListSession::ClickRow() {
    if (Rows.empty()) {
        return;
    }
    const int row = static_cast<int>(World.Below(Rows.size()));
    World.Note("click " + Row(row));
    Select(row);
    User->ClickRow(Ids.List, row);
}

void ListSession::ClickBesideRows() {
    World.Note("click beside the rows");
    if (LeaveBox() != Leaving::Refused) {
        IsSelected = false;
    }
    User->ClickBesideRows(Ids.List);
}

void ListSession::PressListKey() {
    static constexpr std::array<std::uint32_t, 6> Keys = {key::Up,  key::Down,   key::Down,
                                                          key::End, key::Delete, key::Home};
    const std::uint32_t pressed = World.AnyOf(Keys);
    World.Note("go to the list");
    const bool isThere = LeaveBox() != Leaving::Refused;
    User->TabTo(Ids.List);
    if (!isThere || (Mark < 0 && pressed == key::Up)) {
        return;
    }
    World.Note("press the key " + std::to_string(pressed));
    if (pressed == key::Delete) {
        RemoveRow();
    } else if (!Rows.empty()) {
        const int last = static_cast<int>(Rows.size()) - 1;
        const int upOrDown = pressed == key::Up ? std::max(Mark - 1, 0) : std::min(Mark + 1, last);
        const bool isArrow = pressed == key::Up || pressed == key::Down;
        const int before = Current();
        Mark = isArrow ? upOrDown : pressed == key::Home ? 0 : last;
        IsSelected = true;
        if (Mark != before) {
            Refresh(Mark);
        }
    }
    User->Key(pressed);
}

void ListSession::MoveUp() {
    Press("up", Ids.Up, HasUp, [this] {
        if (Current() > 0) {
            MoveTo(Current(), Current() - 1);
        }
    });
}

void ListSession::MoveDown() {
    Press("down", Ids.Down, HasDown, [this] {
        if (Current() >= 0 && Current() < static_cast<int>(Rows.size()) - 1) {
            MoveTo(Current(), Current() + 1);
        }
    });
}

void ListSession::MoveTo(int row, int target) {
    const std::size_t moved = Rows[static_cast<std::size_t>(row)];
    Rows.erase(Rows.begin() + row);
    Rows.insert(Rows.begin() + target, moved);
    Mark = target;
    IsSelected = true;
    At(target)->Shown = At(target)->Name; // the moved row is drawn anew
    Refresh(target);
}

void ListSession::MoveByKey() {
    const bool isUp = World.OneIn(2);
    World.Note(isUp ? "Alt and up" : "Alt and down");
    const bool isThere = LeaveBox() != Leaving::Refused;
    User->TabTo(Ids.List);
    if (!isThere) {
        return;
    }
    const int target = Current() + (isUp ? -1 : 1);
    if (Current() >= 0 && target >= 0 && target < static_cast<int>(Rows.size())) {
        MoveTo(Current(), target);
    }
    User->AltKey(isUp ? key::Up : key::Down);
}

void ListSession::Drag() {
    if (Rows.empty()) {
        return;
    }
    const int from = static_cast<int>(World.Below(Rows.size()));
    const int to = static_cast<int>(World.Below(Rows.size()));
    World.Note("drag " + Row(from) + " to " + Row(to));
    const Leaving left = LeaveBox();
    if (left != Leaving::Refused && Select(from) && left == Leaving::Quiet && from != to) {
        MoveTo(from, to);
    }
    User->DragRow(Ids.List, from, to);
}

/// Each favorite whose name begins so is reached by the letter.
void ListSession::TypeLetter() {
    World.Note("type the letter A in the list");
    const bool isThere = LeaveBox() != Leaving::Refused;
    User->TabTo(Ids.List);
    if (!isThere) {
        return;
    }
    const int count = static_cast<int>(Rows.size());
    for (int step = 1; step <= count; ++step) {
        const int row = (Mark + step) % count;
        if (model::SmallLetters(At(row)->Name.substr(0, 1)) == "a") {
            Mark = row;
            IsSelected = true;
            Refresh(row);
            break;
        }
    }
    User->Type("A");
}

void ListSession::ChangeIcon() {
    const int row = Current();
    if (model::Favorite* const one = At(row)) {
        if (const std::optional<int> icon = ExpectIconPicker(World, Desktop, one->Icon)) {
            one->Icon = *icon;
            Refresh(row);
        }
    }
}

// The end

void ListSession::End(bool accepted) {
    IsOver = true;
    IsAccepted = accepted;
    if (accepted) {
        Accept();
    } else {
        Cancel();
    }
}

void ListSession::PressOk() {
    Press("OK", control::Ok, true, [this] { End(true); });
}

/// Enter accepts from the name box and from the list.
void ListSession::PressEnter() {
    if (!InBox) {
        World.Note("go to the list");
        User->TabTo(Ids.List);
    }
    World.Note("press Enter");
    const Leaving taken = InBox ? TakeName() : Leaving::Quiet;
    if (taken == Leaving::Quiet || taken == Leaving::Told) {
        End(true);
    }
    User->Enter();
}

void ListSession::PressCancel() {
    if (World.OneIn(2)) {
        World.Note("press Escape");
        End(false);
        User->Escape();
    } else {
        Press("Cancel", control::Cancel, true, [this] { End(false); });
    }
}

// What the user sees

void ListSession::Compare() const {
    if (!User->IsOpen() || IsOver) {
        EXPECT_TRUE(IsOver && !User->IsOpen()) << "the dialog ended, or did not";
        return;
    }
    EXPECT_EQ(User->RowCount(Ids.List), static_cast<int>(Rows.size()));
    EXPECT_EQ(User->SelectedRow(Ids.List), IsSelected ? Mark : -1);
    EXPECT_EQ(User->Text(Ids.Name), Box);
    EXPECT_EQ(User->Focused() == Ids.Name, InBox);
    CompareControls();
    CompareOwnControls();
}

void ListSession::CompareControls() const {
    EXPECT_EQ(User->IsEnabled(Ids.Name), HasChangeButtons);
    EXPECT_EQ(User->IsEnabled(Ids.Delete), HasChangeButtons);
    EXPECT_EQ(User->IsEnabled(Ids.Up), HasUp);
    EXPECT_EQ(User->IsEnabled(Ids.Down), HasDown);
    EXPECT_EQ(User->IsEnabled(control::ChangeIcon), HasIconButton);
    const auto icon = User->IconIn(Ids.Icon);
    EXPECT_EQ(icon ? static_cast<int>(icon->Index) : -1, IconShown);
}

void ListSession::CompareRows() const {
    for (std::size_t row = 0; row < Rows.size(); ++row) {
        CompareRow(static_cast<int>(row), Records[Rows[row]]);
    }
}

void ListSession::ExpectRowsInTheList() {
    model::Favorites kept;
    for (const std::size_t index : Rows) {
        kept.push_back(Records[index]);
    }
    World.ExpectList(kept, kept.size());
}

void ListSession::CompareRow(int row, const model::Favorite& favorite) const {
    EXPECT_EQ(User->Cell(Ids.List, row, Ids.NameColumn), favorite.Shown) << Row(row);
}

// Dialogs over a dialog

NameAnswer ExpectNameDialog(ModelWorld& world, MemoryDesktop& desktop, const std::vector<std::string>& names,
                            const std::string& proposed, int level, bool mayChooseLevel) {
    std::vector<std::string> tries; // what is in the box whenever OK is pressed
    NameAnswer answer{.Level = model::HasPart(level) ? level : 1};
    const std::string before = model::Cut(model::Trimmed(proposed));
    const int chosen = world.OneIn(2) ? world.AnyLevel() : 0;
    for (int left = 1 + world.IntBelow(3); left > 0 && !answer.IsGiven; --left) {
        const bool isProposed = tries.empty() && world.OneIn(4);
        const std::string written = isProposed ? before : world.AnyName();
        tries.push_back(written);
        const std::string name = model::Trimmed(model::Typed(written));
        world.Note("enter the name \"" + written + "\" and press OK");
        const bool isTaken = std::any_of(names.begin(), names.end(),
                                         [&](const std::string& one) { return model::SameName(one, name); });
        if (name.empty()) {
            desktop.Messages.Expect(text::CreateNameMissing, MessageIcon::Exclamation);
        } else if (model::HasTilde(name)) {
            desktop.Messages.Expect(text::NameHasSeparator, MessageIcon::Exclamation);
        } else if (isTaken) {
            desktop.Messages.Expect(text::CreateNameExists, MessageIcon::Exclamation);
        } else {
            answer.IsGiven = true;
            answer.Name = name;
        }
    }
    if (mayChooseLevel && chosen != 0) {
        world.Note("(level " + std::to_string(chosen) + ")");
        answer.Level = chosen;
    }
    if (!answer.IsGiven) {
        world.Note("cancel that");
    }
    desktop.Dialogs.OnOpened(dialog::CreateFavorite, [=](MemoryUser& user) {
        EXPECT_EQ(user.Text(control::CreateName), before);
        if (chosen != 0) {
            user.Press(control::CreateLevelDocument + chosen - 1);
        }
        for (const std::string& written : tries) {
            user.Fill(control::CreateName, written);
            user.Press(control::Ok);
        }
        if (user.IsOpen()) {
            EXPECT_FALSE(answer.IsGiven) << "the name is refused: " << Utf8(answer.Name);
            user.Escape();
        }
    });
    return answer;
}

std::optional<int> ExpectIconPicker(ModelWorld& world, MemoryDesktop& desktop, int icon) {
    const bool isCancelled = world.OneIn(4);
    const int picked = world.OneIn(4) ? -1 : world.IntBelow(model::OfferedIcons);
    world.Note("pick the icon at " + std::to_string(picked) + (isCancelled ? ", but cancel" : ""));
    desktop.Dialogs.OnOpened(dialog::IconPicker, [=](MemoryUser& user) {
        if (picked >= 0) {
            user.ClickRow(control::PickerIcons, picked);
        }
        user.Press(isCancelled ? control::Cancel : control::Ok);
    });
    if (isCancelled) {
        return std::nullopt;
    }
    if (picked >= 0) {
        return model::FirstOfferedIcon + picked;
    }
    const bool isOffered = icon >= model::FirstOfferedIcon && icon < model::IconCount;
    return isOffered ? icon : model::FirstOfferedIcon;
}

} // namespace pmx::test
