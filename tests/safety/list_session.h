#pragma once

#include "safety/model_world.h"
#include "support/memory_window.h"

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <vector>

namespace pmx::test {

/// A user at one of the two dialogs around a list of favorites, next to what the user expects to see. Each
/// gesture is first made in the model, which foresees the messages and dialogs that it leads to, and then in
/// the dialog.
class ListSession {
public:
    virtual ~ListSession() = default;
    ListSession(const ListSession&) = delete;
    ListSession& operator=(const ListSession&) = delete;

    /// Opens the dialog, does this or that, and closes it. Compares all along.
    void Run();

protected:
    /// What leaving the name box leads to.
    enum class Leaving {
        Quiet,    ///< nothing that is seen
        Told,     ///< a message, after which the focus goes where it was to go
        NotTaken, ///< the same, and the name is not taken: Enter does not accept
        Refused   ///< a message, after which the focus is back in the name box
    };

    /// The dialog's controls.
    struct Controls {
        ControlId List;
        ControlId Name;
        ControlId Icon;
        ControlId Up;
        ControlId Down;
        ControlId Delete;
        int NameColumn;
    };

    explicit ListSession(ModelWorld& world, const Controls& controls);

    // What the two dialogs have of their own

    virtual std::int64_t Show() = 0;
    virtual ResourceId Template() const = 0;
    virtual bool MayHaveIcon(const model::Favorite& favorite) const = 0;
    virtual Leaving Rename(model::Favorite& favorite, const std::string& name) = 0;
    virtual bool HasIconButtonWithoutRows() const = 0;
    virtual void Accept() = 0;
    virtual void Cancel() {}
    virtual void OwnGesture() {}
    virtual void CompareRow(int row, const model::Favorite& favorite) const;
    virtual void CompareOwnControls() const {}

    // The list and the box

    int Current() const { return IsSelected ? Mark : -1; }
    model::Favorite* At(int row);

    /// The name box shows the favorite's name.
    void ShowName(const model::Favorite& favorite) { Box = Untouched = model::Cut(favorite.Name); }
    void Refresh(int row);
    void Append(const model::Favorite& favorite);
    void RemoveRow();
    bool IsNameOfAnother(std::size_t index, const std::string& name) const;

    // Gestures

    /// A place of the mouse, in words.
    static std::string Row(int row) { return "row " + std::to_string(row); }

    /// Leaves the name box if the user is in it.
    Leaving LeaveBox();

    /// A click on a row: true when it takes place, and the row is then the current one.
    bool Select(int row);

    /// Presses a button with the mouse or with its access key, which `command` foresees.
    template <typename Command>
    void Press(const char* name, ControlId button, bool isEnabled, Command command) {
        const bool byKey = World.OneIn(4);
        World.Note(std::string("press ") + name + (byKey ? " by its key" : ""));
        if (isEnabled && Reaches(byKey)) {
            command();
        }
        if (byKey) {
            User->PressByKey(button);
        } else {
            User->Press(button);
        }
    }

    /// A message with one button comes.
    void Expect(ResourceId id, MessageIcon icon = MessageIcon::Exclamation);

    /// The list file gets the favorites that have rows, in their order.
    void ExpectRowsInTheList();

    /// The icon picker comes over the current favorite.
    void ChangeIcon();

    ModelWorld& World;
    MemoryDesktop Desktop;
    MemoryUser* User = nullptr; ///< while the dialog is open

    model::Favorites Records; ///< as they were when the dialog opened, and those that came
    std::vector<std::size_t> Rows;
    int Mark = -1;
    bool IsSelected = false;
    bool HasChangeButtons = false; ///< those that are for user favorites
    bool HasUp = false;
    bool HasDown = false;
    bool HasIconButton = false;

private:
    void Drive();
    void Gesture();
    void TypeName();
    void ClickRow();
    void ClickBesideRows();
    void PressListKey();
    void MoveUp();
    void MoveDown();
    void MoveByKey();
    void Drag();
    void TypeLetter();
    void MoveTo(int row, int target);
    void PressOk();
    void PressEnter();
    void PressCancel();
    bool Reaches(bool byKey);
    Leaving TakeName();
    Leaving Refuse(ResourceId id);
    void End(bool accepted);
    void Compare() const;
    void CompareControls() const;
    void CompareRows() const;

    const Controls& Ids;
    std::string Box;
    std::string Untouched; ///< what the dialog has put into the box
    bool InBox = false;
    int EditRow = -1;
    int IconShown = -1;
    bool IsOver = false;
    bool IsAccepted = false;
};

/// The fields of a dialog that asks for a favorite's name, and how its user fills them in.
struct NameAnswer {
    bool IsGiven = false; ///< false: cancelled
    std::string Name{};
    int Level = 1;
};

/// Foresees the create-favorite dialog on a desktop: its user tries names, good or bad, and ends it. `names`
/// are those in use; `proposed` and `level` are in the dialog when it opens, and the level stays unless it
/// may be chosen.
NameAnswer ExpectNameDialog(ModelWorld& world, MemoryDesktop& desktop, const std::vector<std::string>& names,
                            const std::string& proposed, int level, bool mayChooseLevel);

/// Foresees the icon picker; the icon that it leads to, none when it is cancelled.
std::optional<int> ExpectIconPicker(ModelWorld& world, MemoryDesktop& desktop, int icon);

/// Runs the editor, the basic list, or another of the ways into the library.
void RunEditor(ModelWorld& world);
void RunBasicList(ModelWorld& world);

} // namespace pmx::test
