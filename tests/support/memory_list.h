#pragma once

#include "platform/list_control.h"

#include <cstdint>
#include <string>
#include <vector>

namespace pmx::test {

/// The image that an icon of the fakes shows.
struct MemoryImage {
    ResourceId Bitmap = 0;
    std::int64_t Index = -1;
    bool operator==(const MemoryImage&) const = default;
};

/// A list view that is only memory, with the rules of the real one.
class MemoryList final : public ListControl {
public:
    struct Column {
        std::string Title;
        int Width = 0;
        bool operator==(const Column&) const = default;
    };

    struct Row {
        int Image = NoImage;
        int StateImage = 0;
        bool Selected = false;
        std::vector<std::string> Cells;
    };

    // What tests look at

    std::vector<Column> Columns;
    std::vector<Row> Rows;
    int FocusedRow = -1;
    int LastMadeVisible = -1;
    bool FullRowSelection = false;
    bool MayDrag = false;
    ResourceId StateBitmap = 0; ///< the bitmap of the state images
    ResourceId LargeBitmap = 0; ///< the bitmap of the large images
    int RedrawPauses = 0;       ///< how often drawing was stopped
    bool Redraw = true;
    ListHit Hit; ///< what the user points at

    int RowCount() const { return static_cast<int>(Rows.size()); }
    std::string Cell(int row, int column) const;
    int StateImage(int row) const { return Has(row) ? At(row).StateImage : 0; }

    // What the user does

    void DeselectAll();

    // ListControl

    void SetFullRowSelection(bool on) override { FullRowSelection = on; }
    void AllowDragging() override { MayDrag = true; }
    void SetStateImages(const ImageList& images) override;
    void SetLargeImages(const ImageList& images) override;
    void InsertColumn(int column, const std::string& title, int width) override;
    void InsertRow(int position, int image) override;
    void DeleteRow(int row) override;
    void Reserve(int count) override { Rows.reserve(static_cast<std::size_t>(count)); }
    void SetCell(int row, int column, const std::string& text) override;
    void SetStateImage(int row, int image) override;
    int SelectedRow() const override;
    void Select(int row) override;
    void EnsureVisible(int row) override;
    ListHit HitOfMessage() const override { return Hit; }
    void SetRedraw(bool on) override;

private:
    bool Has(int row) const { return row >= 0 && row < RowCount(); }
    const Row& At(int row) const { return Rows[static_cast<std::size_t>(row)]; }
    Row& At(int row) { return Rows[static_cast<std::size_t>(row)]; }
};

} // namespace pmx::test
