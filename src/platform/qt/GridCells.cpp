#include "platform/qt/GridCells.h"

#include "platform/qt/QtGrid.h"
#include "runtime/RuntimeError.h"

namespace imex::platform {

namespace {

void requireMeasure(int twips) {
  if (twips < 0)
    throw RuntimeError(ErrorNumber::invalidProcedureCall, "QtGrid");
}

} // namespace

// --- Checks ---------------------------------------------------------------------------------------------------------

void GridCells::require(host::GridCell cell) const {
  const host::GridSize size = m_view.m_model->size();
  const bool isInside = cell.row >= 0 && cell.row < size.rows && cell.column >= 0 && cell.column < size.columns;
  if (!isInside)
    throw RuntimeError(ErrorNumber::subscriptOutOfRange, "QtGrid");
}

/// A cell that the user can enter.
void GridCells::requireOpen(host::GridCell cell) const {
  require(cell);
  if (cell.row == 0 || cell.column == 0)
    throw RuntimeError(ErrorNumber::subscriptOutOfRange, "QtGrid");
}

// --- Grid -----------------------------------------------------------------------------------------------------------

void GridCells::clear() {
  m_view.m_model->clear();
  m_view.noteChanges({0, 0}, {m_view.m_model->size().rows - 1, m_view.m_model->size().columns - 1});
}

host::GridSize GridCells::size() const {
  return m_view.m_model->size();
}

void GridCells::setSize(host::GridSize size) {
  if (size.rows < 1 || size.columns < 1)
    throw RuntimeError(ErrorNumber::invalidProcedureCall, "QtGrid");
  m_view.resizeCells(size);
}

host::RowTexts GridCells::texts(int row) const {
  requireRow(row);
  return m_view.m_model->texts(row);
}

void GridCells::setTexts(host::GridCell first, std::span<const std::string_view> texts) {
  if (texts.empty())
    return;
  const host::GridCell last{first.row, first.column + static_cast<int>(texts.size()) - 1};
  require(first);
  require(last);
  m_view.m_model->setTexts(first, texts);
  m_view.noteChanges(first, last);
}

void GridCells::removeRow(int row) {
  requireRow(row);
  requireOpen({row, size().columns - 1});
  m_view.removeRow(row);
}

host::GridCell GridCells::current() const {
  return m_view.m_current;
}

void GridCells::setCurrent(host::GridCell cell) {
  requireOpen(cell);
  m_view.makeCurrent(cell);
}

void GridCells::setEmphasis(bool isMarked) {
  m_view.m_model->setMarked(m_view.m_current, isMarked);
  m_view.noteChanges(m_view.m_current, m_view.m_current);
}

// --- Layout ---------------------------------------------------------------------------------------------------------

int GridCells::columnWidth(int column) const {
  requireColumn(column);
  return m_view.m_widths.at(column);
}

void GridCells::setColumnWidth(int column, int twips) {
  requireColumn(column);
  requireMeasure(twips);
  m_view.setWidth(column, twips);
}

int GridCells::rowHeight(int row) const {
  requireRow(row);
  return m_view.m_heights.at(row);
}

void GridCells::setRowHeight(int row, int twips) {
  requireRow(row);
  requireMeasure(twips);
  m_view.setHeight(row, twips);
}

void GridCells::setAllRowHeights(int twips) {
  requireMeasure(twips);
  m_view.setHeights(twips);
}

int GridCells::rowTop(int row) const {
  requireRow(row);
  return m_view.topOf(row);
}

void GridCells::alignLeft(int column) {
  requireColumn(column);
  m_view.m_model->setLeft(column);
  m_view.noteChanges({0, column}, {m_view.m_model->size().rows - 1, column});
}

void GridCells::setTextWrap(bool isWrapped) {
  m_view.setWrap(isWrapped);
}

void GridCells::showFirst(host::GridCell cell) {
  requireOpen(cell);
  m_view.scrollToFirst(cell);
}

} // namespace imex::platform
