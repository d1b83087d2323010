#pragma once

#include <string>
#include <vector>

#include <windows.h>

#include <commctrl.h>

namespace pmx::host {

/// A list in columns with a heading line.
class ListView {
public:
    struct Column {
        unsigned TitleId;
        int Width; ///< pixels at 96 dots per inch
    };

    ListView(HWND parent, int controlId, const std::vector<Column>& columns);

    HWND Get() const { return List; }
    void SetIcons(HIMAGELIST icons);

    /// Sets the font, and the columns to their widths on a screen of that resolution.
    void Fit(HFONT font, int resolution);

    /// Gives the last column the width that the others leave.
    void FitLastColumn();

    void Clear();
    void AddRow(const std::vector<std::wstring>& texts, int icon = -1);

    /// The selected row, -1 when none is.
    int Selected() const;
    void Select(int row);

private:
    HWND List;
    std::vector<Column> Columns;
};

} // namespace pmx::host
