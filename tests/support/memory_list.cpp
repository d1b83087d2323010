#include "support/memory_list.h"

#include "support/memory_services.h"

#include <gtest/gtest.h>

#include <algorithm>

namespace pmx::test {

namespace {

/// Where a position is after the row `row` was inserted (+1).
int AfterInsertion(int position, int row) {
    return position >= row ? position + 1 : position;
}

/// Where a position is after the row `row` was deleted.
int AfterDeletion(int position, int row) {
    if (position == row) {
        return -1;
    }
    return position > row ? position - 1 : position;
}

} // namespace

int MemoryList::SelectedRow() const {
    const auto found = std::find_if(Rows.begin(), Rows.end(), [](const Row& row) { return row.Selected; });
    return found == Rows.end() ? -1 : static_cast<int>(found - Rows.begin());
}

void MemoryList::SetStateImages(const ImageList& images) {
    StateBitmap = dynamic_cast<const MemoryImageList&>(images).Bitmap();
}

void MemoryList::SetLargeImages(const ImageList& images) {
    LargeBitmap = dynamic_cast<const MemoryImageList&>(images).Bitmap();
}

void MemoryList::InsertColumn(int column, const std::string& title, int width) {
    const auto at = std::clamp(column, 0, static_cast<int>(Columns.size()));
    Columns.insert(Columns.begin() + at, Column{title, width});
}

void MemoryList::InsertRow(int position, int image) {
    const int row = std::clamp(position, 0, RowCount());
    Row inserted;
    inserted.Image = image;
    inserted.Cells.resize(Columns.size());
    Rows.insert(Rows.begin() + row, inserted);
    FocusedRow = AfterInsertion(FocusedRow, row);
}

void MemoryList::DeleteRow(int row) {
    if (!Has(row)) {
        return;
    }
    Rows.erase(Rows.begin() + row);
    FocusedRow = AfterDeletion(FocusedRow, row);
}

std::string MemoryList::Cell(int row, int column) const {
    const bool exists = Has(row) && column >= 0 && column < static_cast<int>(At(row).Cells.size());
    return exists ? At(row).Cells[static_cast<std::size_t>(column)] : std::string();
}

void MemoryList::SetCell(int row, int column, const std::string& text) {
    if (!Has(row)) {
        return;
    }
    if (column < 0 || column >= static_cast<int>(At(row).Cells.size())) {
        ADD_FAILURE() << "the list has no column " << column;
        return;
    }
    At(row).Cells[static_cast<std::size_t>(column)] = text;
}

void MemoryList::SetStateImage(int row, int image) {
    if (Has(row)) {
        At(row).StateImage = image;
    }
}

void MemoryList::Select(int row) {
    if (!Has(row)) {
        return;
    }
    DeselectAll();
    At(row).Selected = true;
    FocusedRow = row;
}

void MemoryList::DeselectAll() {
    for (Row& row : Rows) {
        row.Selected = false;
    }
}

void MemoryList::EnsureVisible(int row) {
    if (Has(row)) {
        LastMadeVisible = row;
    }
}

void MemoryList::SetRedraw(bool on) {
    RedrawPauses += Redraw && !on ? 1 : 0;
    Redraw = on;
}

} // namespace pmx::test
