#pragma once

#include "platform/dialog_window.h"

#include <optional>

#include <windows.h>

namespace pmx::win32 {

/// Dragging of a row of a report list with the mouse, from the moment that the list notices it until the button
/// is released. A line shows where the row would go, and the list scrolls while the mouse is at its upper or
/// lower edge.
class RowDrag {
public:
    explicit RowDrag(HWND list) : List(list) {}

    void Begin(int row);
    bool IsOn() const { return Button != Held::No; }

    /// The row stays where it is. What the user still does with the button counts for nothing.
    void Cancel();

    /// True when the list is not to see the message.
    bool Handle(UINT message, WPARAM wParam, LPARAM lParam);

    /// The move that the user has just made, once.
    std::optional<ListMove> TakeMove();

    /// To be called when the list has drawn itself.
    void DrawLine() const;

private:
    enum class Held { No, Dragging, Cancelled };

    struct Rows {
        int Top;    ///< the first that can be seen
        int Count;  ///< of all
        int Y;      ///< where the first begins
        int Height; ///< of each
    };

    LRESULT Ask(UINT message, WPARAM wParam = 0, LPARAM lParam = 0) const;
    Rows Measure() const;
    RECT LineAt(int place) const;
    bool IsMove() const { return Place >= 0 && Place != Row && Place != Row + 1; }
    void Point(int y);
    void ScrollAtEdge();
    void SetPlace(int place);
    void Drop();
    void End();

    HWND List;
    Held Button = Held::No;
    int Row = -1;
    int Place = -1; ///< the row would go before the row of this number
    std::optional<ListMove> Made;
};

} // namespace pmx::win32
