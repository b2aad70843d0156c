#include "controls/ImExFileEdit/ImExFileEdit.h"
#include "controls/ImExFileEdit/editorLayout.h"
#include "host/Keyboard.h"
#include "host/Services.h"
#include "ui_ImExFileEdit.h"

namespace imex {

namespace {

host::Keyboard& keyboard() {
  return host::required(host::services().keyboard);
}

} // namespace

void ImExFileEdit::reset() {
  hostCalled("reset", [&] {
    m_isEditing = false;
    setLine({});
    m_editRow = kFirstCell.row;
    m_editColumn = kFirstCell.column;
    if (hasEditCell()) {
      grid().setEmphasis(false);
      grid().setCurrent(kFirstCell);
      grid().setEmphasis(true);
    }
    nameEditCell();
    m_ui->MSFlexGrid1->setFocus();
  });
}

/// Whether the key Shift is down is asked of the keyboard, not taken from an event. No traces.
void ImExFileEdit::moveToNextCell() {
  const bool goesBack = keyboard().isDown(host::VirtualKey::shift);
  m_ui->MSFlexGrid1->setFocus();
  if (goesBack)
    moveBack();
  else
    moveForward();
}

/// The keystrokes make the grid tell of leaving and entering a cell, which a move by code does not.
void ImExFileEdit::moveBack() {
  const auto [row, column] = grid().current();
  if (column >= 2) {
    grid().setCurrent({row, column - 1});
    keyboard().sendKeys("{Right}");
    keyboard().sendKeys("{Left}");
  } else if (row >= 2) {
    moveByCode({row - 1, column});
  }
}

void ImExFileEdit::moveForward() {
  const host::GridSize size = grid().size();
  const auto [row, column] = grid().current();
  if (column < size.columns - 1) {
    keyboard().sendKeys("{Right}");
    return;
  }
  if (row == size.rows - 1)
    grid().setSize({size.rows + 1, size.columns});
  keyboard().sendKeys("{Down}");
  for (int step = 1; step < size.columns; ++step)
    keyboard().sendKeys("{Left}");
}

/// The grid tells nobody of this move, so the mark and the edit line are taken along here.
void ImExFileEdit::moveByCode(host::GridCell cell) {
  grid().setEmphasis(false);
  grid().setCurrent(cell);
  grid().setEmphasis(true);
  if (isErrorColumn(cell.column))
    cell.column = m_editColumn;
  if (m_isEditing)
    bindLineTo(cell);
  else
    bindTo(cell);
}

/// The first cell that is entered becomes the edit cell without its text in the edit line.
void ImExFileEdit::enterCurrentCell() {
  const host::GridCell cell = grid().current();
  if (!m_isEditing)
    bindTo(cell);
  else if (!isErrorColumn(cell.column))
    bindLineTo(cell);
  m_isEditing = true;
  grid().setEmphasis(true);
}

} // namespace imex
