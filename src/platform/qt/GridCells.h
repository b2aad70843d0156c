#pragma once

#include "host/Grid.h"

namespace imex::platform {

class QtGrid;

/// A QtGrid's cells and layout as the component sees them. It checks what it is given and leaves the rest to the view.
class GridCells : public host::Grid, public host::GridLayout {
 public:
  /// The view outlives the object.
  explicit GridCells(QtGrid& view) : m_view(view) {}

  // host::Grid
  void clear() override;
  host::GridSize size() const override;
  void setSize(host::GridSize size) override;
  host::RowTexts texts(int row) const override;
  void setTexts(host::GridCell first, std::span<const std::string_view> texts) override;
  void removeRow(int row) override;
  host::GridCell current() const override;
  void setCurrent(host::GridCell cell) override;
  void setEmphasis(bool isMarked) override;
  host::GridLayout& layout() override { return *this; }

  // host::GridLayout
  int columnWidth(int column) const override;
  void setColumnWidth(int column, int twips) override;
  int rowHeight(int row) const override;
  void setRowHeight(int row, int twips) override;
  void setAllRowHeights(int twips) override;
  int rowTop(int row) const override;
  void alignLeft(int column) override;
  void setTextWrap(bool isWrapped) override;
  void showFirst(host::GridCell cell) override;

 private:
  void require(host::GridCell cell) const;
  void requireOpen(host::GridCell cell) const;
  void requireRow(int row) const { require({row, 0}); }
  void requireColumn(int column) const { require({0, column}); }

  QtGrid& m_view;
};

} // namespace imex::platform
