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
  host::RowTexts texts(int row) const override { return m_texts.texts(row); }
  void setTexts(host::GridCell first, std::span<const std::string_view> texts) override {
    m_texts.setTexts(first.row, first.column, texts);
  }
  void removeRow(int row) override { m_texts.removeRow(row); }
  host::GridCell current() const override { return {0, 0}; }
  void setCurrent(host::GridCell /*cell*/) override {}
  void setEmphasis(bool /*isMarked*/) override {}
  host::GridLayout& layout() override { throw RuntimeError(ErrorNumber::objectVariableNotSet); }

 private:
  platform::GridTexts m_texts;
};

} // namespace imex::fuzz
