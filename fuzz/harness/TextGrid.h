#pragma once

#include "host/Grid.h"
#include "platform/qt/GridTexts.h"
#include "runtime/RuntimeError.h"

#include <string_view>

namespace imex::fuzz {

/// The texts of a grid, as the editor's own grid keeps them, without a window.
class TextGrid : public host::Grid {
 public:
  TextGrid(int rows, int columns) : m_texts(rows, columns) {}

  void clear() override { m_texts.clear(); }
  host::GridSize size() const override { return {m_texts.rows(), m_texts.columns()}; }
  void setSize(host::GridSize size) override { m_texts.setSize(size.rows, size.columns); }
  std::string_view text(host::GridCell cell) const override { return m_texts.text(cell.row, cell.column); }
  void setText(host::GridCell cell, std::string_view text) override { m_texts.setText(cell.row, cell.column, text); }
  void removeRow(int row) override { m_texts.removeRow(row); }
  host::GridCell current() const override { return {0, 0}; }
  void setCurrent(host::GridCell /*cell*/) override {}
  void setEmphasis(bool /*isMarked*/) override {}
  host::GridLayout& layout() override { throw RuntimeError(ErrorNumber::objectVariableNotSet); }

 private:
  platform::GridTexts m_texts;
};

} // namespace imex::fuzz
