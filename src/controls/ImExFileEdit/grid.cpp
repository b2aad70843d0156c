#include "controls/ImExFileEdit/ImExFileEdit.h"
#include "controls/ImExFileEdit/keyCodes.h"
#include "controls/ImExFileEdit/lastCharacter.h"
#include "controls/common/ownEvent.h"
#include "host/Keyboard.h"
#include "host/MessageBox.h"
#include "host/Services.h"
#include "platform/qt/twips.h"
#include "request/shared.h"
#include "runtime/text.h"
#include "ui_ImExFileEdit.h"

#include <QKeyEvent>
#include <QPoint>

#include <optional>

namespace imex {

namespace {

constexpr int kCtrlC = 'C';
constexpr int kCtrlV = 'V';
constexpr int kCtrlX = 'X';
constexpr int kOkAlone = 0; // a box without an icon

constexpr std::string_view kDblClickFailed =
    "An error has occurred while double-clicking within the row view of the file being edited.";
constexpr std::string_view kEnterCellFailed = "An error has occurred while navigating between cells of the row view.";
constexpr std::string_view kKeyDownFailed =
    "An error has occurred while processing the key down event within the row view.";
constexpr std::string_view kKeyPressFailed =
    "An error has occurred while processing the key press event within the row view.";
constexpr std::string_view kMouseDownFailed =
    "An error has occurred while processing the mouse down event within the row view.";

std::string number(int value) {
  return std::to_string(value);
}

bool isTyped(int keyAscii) {
  return keyAscii >= 32 && keyAscii <= 126 && keyAscii != kBarCharacter;
}

/// Whether a key is the control's own. The others move the current cell or are for the host's form.
bool isAnswered(const KeyStroke& stroke, std::optional<int> character) {
  const bool isMove = stroke.code == kTabKey || (stroke.code == kEnterKey && stroke.shift <= kShift);
  const bool isClip =
      stroke.shift == kCtrl && (stroke.code == kCtrlC || stroke.code == kCtrlV || stroke.code == kCtrlX);
  const bool isText = character && (*character >= ' ' || *character == kBackspaceKey);
  return isMove || isClip || isText || stroke.code == kDeleteKey;
}

bool isTabDown() {
  const host::Keyboard* keyboard = host::services().keyboard;
  return keyboard != nullptr && keyboard->isDown(host::VirtualKey::tab);
}

} // namespace

host::Grid& ImExFileEdit::grid() const {
  return m_ui->MSFlexGrid1->cells();
}

bool ImExFileEdit::isErrorColumn(int column) const {
  return m_isErrorsView && column == grid().size().columns - 1;
}

// --- Keys -----------------------------------------------------------------------------------------------------------

/// A key goes down, then its character is typed, then the Tab key is looked after: the control's answer to it moves the
/// focus away and back, and the focus must not move again while it does.
void ImExFileEdit::gridKeyPressed(QKeyEvent& event) {
  const KeyStroke stroke = keyStroke(event);
  const std::optional<int> character = characterCode(event);
  event.setAccepted(isAnswered(stroke, character));
  m_isTabDue = false;
  runAsEvent([&] { MSFlexGrid1_KeyDown(stroke.code, stroke.shift); });
  if (character)
    runAsEvent([&] { MSFlexGrid1_KeyPress(*character); });
  if (std::exchange(m_isTabDue, false))
    runAsEvent([&] { checkTab(); });
}

void ImExFileEdit::gridFocusChanged(bool hasFocus) {
  m_isTabDue = !hasFocus && isTabDown();
}

/// Not traced.
void ImExFileEdit::checkTab() {
  guardedIn(
      *this, labels("MSFlexGrid1_LostFocus"), [&] { moveToNextCell(); }, ShowBox{});
}

void ImExFileEdit::MSFlexGrid1_KeyDown(int keyCode, int shift) {
  const auto text = [&] {
    return "MSFlexGrid1_KeyDown(KeyCode = " + number(keyCode) + ", Shift = " + number(shift) + ")";
  };
  handlerWithArguments("MSFlexGrid1_KeyDown", text, kKeyDownFailed, [&] {
    if (keyCode == kEnterKey && (shift == kNoShift || shift == kShift))
      moveToNextCell();
    else if (keyCode == kTabKey)
      m_ui->txtChangeField->setFocus(Qt::TabFocusReason);
    else if (keyCode == kDeleteKey)
      deleteKey();
    else if (shift == kCtrl)
      ctrlKey(keyCode);
  });
}

void ImExFileEdit::deleteKey() {
  if (m_isRowSelected)
    deleteSelectedRow();
  else if (hasEditCell())
    grid().setText(editCell(), {});
  refreshLine();
}

/// The only record row is emptied, with its number, so that the grid keeps one. Rows below keep their numbers.
void ImExFileEdit::deleteSelectedRow() {
  host::Grid& cells = grid();
  const host::GridSize size = cells.size();
  cells.setEmphasis(false); // the current cell may be in another row than the one that goes
  if (m_editRow > 1) {
    cells.removeRow(m_editRow);
    m_editRow = cells.current().row;
    m_isModified = true;
  } else if (size.rows > 2) {
    cells.removeRow(1);
  } else if (size.rows == 2) {
    for (int column = 0; column < size.columns; ++column)
      cells.setText({1, column}, {});
  }
  cells.setEmphasis(true);
  nameEditCell();
}

void ImExFileEdit::ctrlKey(int keyCode) {
  host::Grid& cells = grid();
  const host::GridCell current = cells.current();
  if (keyCode == kCtrlC || keyCode == kCtrlX)
    m_clipText = cells.text(current);
  if (keyCode == kCtrlX && hasEditCell())
    cells.setText(editCell(), {});
  if (keyCode == kCtrlV && current.row > 0)
    cells.setText(current, m_clipText);
  if (keyCode == kCtrlX || keyCode == kCtrlV)
    refreshLine();
}

void ImExFileEdit::MSFlexGrid1_KeyPress(int keyAscii) {
  const auto text = [&] { return "MSFlexGrid1_KeyPress(KeyAscii = " + number(keyAscii) + ")"; };
  handlerWithArguments("MSFlexGrid1_KeyPress", text, kKeyPressFailed, [&] {
    m_isModified = true;
    if (isTyped(keyAscii) || keyAscii == kBackspaceKey)
      type(keyAscii);
  });
}

/// Appends a character to the current cell, or takes its last one away. The titles, where the grid has no record, are
/// not typed at.
void ImExFileEdit::type(int keyAscii) {
  const host::GridCell current = grid().current();
  if (current.row < 1)
    return;
  std::string text(grid().text(current));
  if (keyAscii == kBackspaceKey)
    removeLastCharacter(text);
  else
    text += static_cast<char>(keyAscii);
  grid().setText(current, text);
  if (!isErrorColumn(current.column))
    bindLineTo(current);
}

// --- Mouse ----------------------------------------------------------------------------------------------------------

void ImExFileEdit::gridMousePressed(QPoint point, Qt::MouseButton button, Qt::KeyboardModifiers modifiers) {
  const double twips = platform::twipsPerPixel(*m_ui->MSFlexGrid1);
  runAsEvent(
      [&] { MSFlexGrid1_MouseDown(buttonCode(button), shiftState(modifiers), point.x() * twips, point.y() * twips); });
}

void ImExFileEdit::MSFlexGrid1_MouseDown(int button, int shift, double xTwips, double yTwips) {
  const auto text = [&] {
    return "MSFlexGrid1_MouseDown(Button = " + number(button) + ", Shift = " + number(shift) + ")";
  };
  handlerWithArguments("MSFlexGrid1_MouseDown", text, kMouseDownFailed, [&] {
    m_isRowSelected = false;
    if (xTwips < grid().layout().columnWidth(0))
      selectRowAt(yTwips);
  });
}

/// The row whose number was pressed becomes the current one, so that it is the one that Delete removes.
void ImExFileEdit::selectRowAt(double yTwips) {
  host::GridLayout& layout = grid().layout();
  const int rows = grid().size().rows;
  const auto isHit = [&](int row) {
    const int top = layout.rowTop(row);
    return top <= yTwips && yTwips < top + layout.rowHeight(row);
  };
  for (int row = 0; row < rows; ++row) {
    if (!isHit(row))
      continue;
    m_selectedRow = row;
    m_isRowSelected = true;
    if (row > 0)
      moveByCode({row, grid().current().column});
    return;
  }
}

void ImExFileEdit::MSFlexGrid1_DblClick() {
  handler("MSFlexGrid1_DblClick", kDblClickFailed, [&] {
    const host::GridCell current = grid().current();
    if (isErrorColumn(current.column)) {
      host::required(host::services().messageBox).show(grid().text(current), kOkAlone, kMaintenanceTitle);
      return;
    }
    if (current.row < 1)
      return;
    bindLineTo(current);
    m_ui->txtChangeField->selectAll();
    m_ui->txtChangeField->setFocus();
  });
}

// --- Moves of the user ----------------------------------------------------------------------------------------------

void ImExFileEdit::MSFlexGrid1_EnterCell() {
  handler("MSFlexGrid1_EnterCell", kEnterCellFailed, [&] { enterCurrentCell(); });
}

void ImExFileEdit::MSFlexGrid1_LeaveCell() {
  handler("MSFlexGrid1_LeaveCell", kDefaultFailurePrompt, [&] { grid().setEmphasis(false); });
}

} // namespace imex
