#pragma once

#include "platform/image_list.h"

#include <cstdint>
#include <memory>
#include <string>

namespace pmx {

/// Where in a list a click happened.
struct ListHit {
    int Row = -1;              ///< -1: on no row
    bool OnStateImage = false; ///< on the state image of that row
};

/// A list view of a dialog (report or large-icon view, as its template says; single selection). Shows what it is
/// told, and tells what the user selects and points at; everything else about its rows the dialog knows itself.
///
/// Rows and columns are numbered from 0. Texts are in the system's code page. A row number outside the list
/// makes an operation do nothing.
class ListControl {
public:
    static constexpr int NoImage = -1;

    virtual ~ListControl() = default;
    ListControl(const ListControl&) = delete;
    ListControl& operator=(const ListControl&) = delete;

    /// Sets the extended style to full-row selection or to none at all.
    virtual void SetFullRowSelection(bool on) = 0;

    /// Lets the user drag rows with the mouse, which the list only tells.
    virtual void AllowDragging() = 0;

    /// The images in front of the rows, of which SetStateImage picks one. Borrowed: must outlive the window.
    virtual void SetStateImages(const ImageList& images) = 0;

    /// The images of large-icon view. Borrowed: must outlive the window.
    virtual void SetLargeImages(const ImageList& images) = 0;

    /// Adds a left-aligned column at position `column`, as wide as so many pixels of a screen with 96 dots per
    /// inch. A title that is cut shows in full when the mouse rests on it.
    virtual void InsertColumn(int column, const std::string& title, int width) = 0;

    /// Inserts a row in front of the row at `position` (at the end when there is none) with empty cells, and in
    /// large-icon view with that image.
    virtual void InsertRow(int position, int image = NoImage) = 0;

    virtual void DeleteRow(int row) = 0;

    /// Makes room for `count` rows in all, so that many rows can be inserted quickly.
    virtual void Reserve(int count) = 0;

    virtual void SetCell(int row, int column, const std::string& text) = 0;

    /// Shows the state image of that number, counted from 1, in front of the row.
    virtual void SetStateImage(int row, int image) = 0;

    /// The row that is selected; -1 for none.
    virtual int SelectedRow() const = 0;

    /// Selects the row (and so deselects the others), and gives it the list's focus mark.
    virtual void Select(int row) = 0;

    virtual void EnsureVisible(int row) = 0;

    /// What lies under the cursor position of the message that is being handled (a click or a double click).
    virtual ListHit HitOfMessage() const = 0;

    /// Stops drawing until it is switched on again, which draws everything once. Use ListRedrawPause.
    virtual void SetRedraw(bool on) = 0;

protected:
    ListControl() = default;
};

/// Keeps a list from drawing while it is filled, so that it does not flicker.
class ListRedrawPause {
public:
    explicit ListRedrawPause(ListControl& list) : List(list) { List.SetRedraw(false); }
    ~ListRedrawPause() { List.SetRedraw(true); }
    ListRedrawPause(const ListRedrawPause&) = delete;
    ListRedrawPause& operator=(const ListRedrawPause&) = delete;

private:
    ListControl& List;
};

} // namespace pmx
