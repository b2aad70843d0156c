#include "controls/ImExFileEdit/ImExFileEdit.h"
#include "controls/ImExFileEdit/keyCodes.h"
#include "controls/common/ownEvent.h"
#include "ui_ImExFileEdit.h"

#include <QKeyEvent>
#include <QLabel>
#include <QStyle>

namespace imex {

namespace {

constexpr std::string_view kKeyDownFailed =
    "An error has occurred while processing the key down event within the cell editor.";

/// Codes of keys, not of characters: the arrows are among them, too.
bool isPrintable(int keyCode) {
  return keyCode >= 32 && keyCode <= 126;
}

} // namespace

// --- Keys -----------------------------------------------------------------------------------------------------------

bool ImExFileEdit::filterLine(QEvent* event) {
  switch (event->type()) {
  case QEvent::KeyPress:
    return lineKeyPressed(static_cast<const QKeyEvent&>(*event));
  case QEvent::KeyRelease:
    lineKeyReleased(static_cast<const QKeyEvent&>(*event));
    return false;
  case QEvent::FocusOut:
    if (std::exchange(m_isLineKeyDown, false) && m_isEditing && !m_isBarTyped) // a key that is down comes up elsewhere
      runAsEvent([this] { editCellTakesLine(); });
    return false;
  case QEvent::Resize:
  case QEvent::FontChange:
    placeCellLabel();
    return false;
  default:
    return false;
  }
}

/// True for a key that goes no further. One that took the focus away must not move it on from there.
bool ImExFileEdit::lineKeyPressed(const QKeyEvent& event) {
  const KeyStroke stroke = keyStroke(event);
  const std::optional<int> character = characterCode(event);
  m_isLineKeyDown = true;
  bool isSwallowed = stroke == KeyStroke{kTabKey, kShift};
  runAsEvent([&] { txtChangeField_KeyDown(stroke.code, stroke.shift); });
  if (character)
    runAsEvent([&] { isSwallowed = txtChangeField_KeyPress(*character); });
  return isSwallowed;
}

void ImExFileEdit::lineKeyReleased(const QKeyEvent& event) {
  if (event.isAutoRepeat())
    return;
  runAsEvent([&] { txtChangeField_KeyUp(); });
  m_isLineKeyDown = false;
}

void ImExFileEdit::txtChangeField_KeyDown(int keyCode, int shift) {
  const auto text = [&] {
    return "txtChangeField_KeyDown(KeyCode = " + std::to_string(keyCode) + ", Shift = " + std::to_string(shift) + ")";
  };
  handlerWithArguments("txtChangeField_KeyDown", text, kKeyDownFailed, [&] {
    const bool isBar = keyCode == kBarKey && shift == kShift;
    if (!isBar)
      undoBar();
    else if (m_delimiterAscii == kBarCharacter)
      rememberLine();
    if (isPrintable(keyCode))
      m_isModified = true;
    if (keyCode == kEnterKey && shift == kNoShift) {
      if (m_isEditing)
        editCellTakesLine();
      m_ui->MSFlexGrid1->setFocus();
    }
    if (keyCode == kTabKey && shift == kShift)
      m_ui->cmdCancel->setFocus(Qt::BacktabFocusReason);
  });
}

/// True where the line is not to see the character.
bool ImExFileEdit::txtChangeField_KeyPress(int keyAscii) {
  bool isSwallowed = false;
  const auto text = [&] { return "txtChangeField_KeyPress( KeyAscii = " + std::to_string(keyAscii) + ")"; };
  handlerWithArguments("txtChangeField_KeyPress", text, kDefaultFailurePrompt,
                       [&] { isSwallowed = keyAscii == kEnterKey; });
  return isSwallowed;
}

/// Whichever key comes up first after the vertical bar went down undoes it: the user may let go of Shift before.
void ImExFileEdit::txtChangeField_KeyUp() {
  handler("txtChangeField_KeyUp", kDefaultFailurePrompt, [&] {
    if (m_isBarTyped) {
      undoBar();
      return;
    }
    editCellTakesLine();
    m_rememberedText = m_ui->txtChangeField->text();
  });
}

/// A key that is held down types the bar again and again; the text before the first of them counts.
void ImExFileEdit::rememberLine() {
  if (m_isBarTyped)
    return;
  m_rememberedText = m_ui->txtChangeField->text();
  m_isBarTyped = true;
}

/// The caret goes to the end.
void ImExFileEdit::undoBar() {
  if (std::exchange(m_isBarTyped, false))
    m_ui->txtChangeField->setText(m_rememberedText);
}

/// Text that comes without a key, from the mouse's menu, by dragging or from an input method, has no release of a key
/// to wait for.
void ImExFileEdit::lineEdited() {
  if (m_isLineKeyDown)
    return;
  guardedIn(
      *this, labels("txtChangeField_Change"),
      [&] {
        m_isModified = true;
        editCellTakesLine();
      },
      ShowBox{});
}

// --- The cell that the line is bound to -----------------------------------------------------------------------------

/// Only what the user changed since the line was loaded: the line need not hold the text of its cell.
void ImExFileEdit::editCellTakesLine() {
  const QString text = m_ui->txtChangeField->text();
  if (text == m_lineText || !hasEditCell())
    return;
  grid().setText(editCell(), toCore(text));
  m_lineText = text;
}

bool ImExFileEdit::hasEditCell() const {
  const host::GridSize size = grid().size();
  return m_editRow < size.rows && m_editColumn < size.columns;
}

void ImExFileEdit::bindTo(host::GridCell cell) {
  m_editRow = cell.row;
  m_editColumn = cell.column;
  nameEditCell();
}

void ImExFileEdit::bindLineTo(host::GridCell cell) {
  bindTo(cell);
  refreshLine();
}

/// Messages never come into the line, not even where the first cell that was entered is one.
void ImExFileEdit::refreshLine() {
  const bool isLoadable = hasEditCell() && !isErrorColumn(m_editColumn);
  setLine(isLoadable ? grid().text(editCell()) : std::string_view());
}

void ImExFileEdit::setLine(std::string_view text) {
  m_lineText = toQt(text);
  m_isBarTyped = false;
  m_ui->txtChangeField->setText(m_lineText);
}

// --- Its name -------------------------------------------------------------------------------------------------------

/// The number that stands beside the row, not its position: rows that were deleted leave gaps.
QString ImExFileEdit::editCellName() const {
  if (!hasEditCell())
    return QStringLiteral("No row");
  const QString number = toQt(grid().text({m_editRow, 0}));
  const QString title = toQt(grid().text({0, m_editColumn}));
  const QString row = number.isEmpty() ? QStringLiteral("New row") : QStringLiteral("Row %1").arg(number);
  const QString column = title.isEmpty() ? QStringLiteral("column %1").arg(int{m_editColumn}) : title;
  return row + QStringLiteral(", ") + column;
}

void ImExFileEdit::nameEditCell() {
  m_ui->txtChangeField->setAccessibleName(editCellName());
  placeCellLabel();
}

/// The label stands inside the line, in front of the text, and leaves at least two thirds of it. Its first letter leads
/// to the line.
void ImExFileEdit::placeCellLabel() {
  constexpr int kShare = 3;
  constexpr int kPadding = 6;
  QLineEdit& line = *m_ui->txtChangeField;
  const int frame = line.style()->pixelMetric(QStyle::PM_DefaultFrameWidth, nullptr, &line);
  const int widest = line.width() / kShare - 2 * kPadding;
  const QString text = m_cellLabel->fontMetrics().elidedText(editCellName(), Qt::ElideRight, std::max(widest, 0));
  m_cellLabel->setText(QLatin1Char('&') + QString(text).replace(QLatin1Char('&'), QStringLiteral("&&")));
  const int width = m_cellLabel->fontMetrics().horizontalAdvance(text) + 2 * kPadding;
  m_cellLabel->setGeometry(frame, frame, width, line.height() - 2 * frame);
  line.setTextMargins(width, 0, 0, 0);
}

} // namespace imex
