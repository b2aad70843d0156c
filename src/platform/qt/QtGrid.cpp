#include "platform/qt/QtGrid.h"

#include "platform/qt/GridDelegate.h"

#include <QAbstractButton>
#include <QHeaderView>
#include <QKeyEvent>
#include <QMouseEvent>
#include <QScopedValueRollback>
#include <QScrollBar>
#include <QSignalBlocker>

#include <algorithm>
#include <utility>

namespace imex::platform {

namespace {

constexpr host::GridSize kFirstSize{2, 2};
constexpr int kUsualWidth = 960; // twips
constexpr int kBesideLine = 6;   // pixels of a row above and below a line of text
constexpr int kNarrowest = 8;    // pixels to which the user can make a column

bool isTab(const QEvent& event) {
  if (event.type() != QEvent::KeyPress)
    return false;
  const int key = static_cast<const QKeyEvent&>(event).key();
  return key == Qt::Key_Tab || key == Qt::Key_Backtab;
}

} // namespace

// --- Construction ---------------------------------------------------------------------------------------------------

QtGrid::QtGrid(QWidget* parent)
    : QTableView(parent), m_model(new GridModel(kFirstSize, this)), m_delegate(new GridDelegate(*m_model, this)),
      m_cells(*this), m_measure(font()), m_twipsPerPixel(imex::platform::twipsPerPixel(*this)),
      m_widths(kFirstSize.columns, kUsualWidth), m_heights(kFirstSize.rows, 0) {
  setUpView();
  setUpHeaders();
  setFont(cellFont(QFont()));
  applyFont();
  applyWidths();
  takeCurrent(m_current);
}

QtGrid::~QtGrid() = default;

void QtGrid::setUpView() {
  setModel(m_model);
  setItemDelegate(m_delegate);
  setLayoutDirection(Qt::LeftToRight);
  setEditTriggers(NoEditTriggers);
  setSelectionMode(NoSelection);
  setTabKeyNavigation(false);
  setHorizontalScrollMode(ScrollPerPixel);
  setVerticalScrollMode(ScrollPerPixel);
  setAttribute(Qt::WA_InputMethodEnabled, false);
  connect(selectionModel(), &QItemSelectionModel::currentChanged, this, &QtGrid::viewMoved);
}

void QtGrid::setUpHeaders() {
  setCornerButtonEnabled(false); // it would select everything
  for (QWidget* corner : findChildren<QAbstractButton*>(Qt::FindDirectChildrenOnly))
    corner->installEventFilter(this);
  for (QHeaderView* header : {horizontalHeader(), verticalHeader()}) {
    header->setSectionsClickable(false);
    header->setHighlightSections(false);
    header->viewport()->installEventFilter(this);
  }
  horizontalHeader()->setSectionResizeMode(QHeaderView::Interactive);
  horizontalHeader()->setMinimumSectionSize(kNarrowest);
  horizontalHeader()->setTextElideMode(Qt::ElideRight);
  verticalHeader()->setSectionResizeMode(QHeaderView::Fixed);
  verticalHeader()->setMinimumSectionSize(0);
  connect(horizontalHeader(), &QHeaderView::sectionResized, this,
          [this](int section, int, int pixels) { sectionMoved(section, pixels); });
}

void QtGrid::setMessageColumn(int column) {
  m_model->setMessageColumn(column);
  viewport()->update();
}

std::optional<host::GridCell> QtGrid::cellAt(QPoint point) {
  applyHeights();
  const auto position = [](int at, int fixed, const QHeaderView& header) {
    return at < 0 ? -1 : at < fixed ? 0 : header.logicalIndexAt(at - fixed) + 1;
  };
  const int fixedHeight = pixels(m_heights.at(0));
  const int fixedWidth = pixels(m_widths.at(0));
  const int row = position(point.y(), fixedHeight, *verticalHeader());
  const int column = position(point.x(), fixedWidth, *horizontalHeader());
  const bool isInside =
      (row > 0 || (row == 0 && point.y() < fixedHeight)) && (column > 0 || (column == 0 && point.x() < fixedWidth));
  return isInside ? std::optional(host::GridCell{row, column}) : std::nullopt;
}

// --- Size -----------------------------------------------------------------------------------------------------------

void QtGrid::resizeCells(host::GridSize size) {
  const bool hasNewColumns = size.columns != m_model->size().columns;
  {
    const QScopedValueRollback own(m_isOwnChange, true); // the view may choose another current item
    m_model->setSize(size);
  }
  m_widths.setCount(size.columns);
  m_heights.setCount(size.rows);
  if (hasNewColumns) {
    applyWidths();
    m_firstHeight = 0;
  }
  if (!m_heights.areAllUsual())
    m_lastHeight = size.rows - 1;
  takeCurrent(nearest(m_current));
}

void QtGrid::removeRow(int row) {
  applyHeights(); // before the rows below have other numbers
  {
    const QScopedValueRollback own(m_isOwnChange, true);
    m_model->removeGridRow(row);
  }
  m_heights.remove(row);
  takeCurrent(nearest(m_current));
  refreshSoon();
}

/// The cell itself where it is one that can be entered.
host::GridCell QtGrid::nearest(host::GridCell cell) const {
  const auto within = [](int position, int count) { return std::clamp(position, std::min(1, count - 1), count - 1); };
  const host::GridSize size = m_model->size();
  return {within(cell.row, size.rows), within(cell.column, size.columns)};
}

// --- Changes --------------------------------------------------------------------------------------------------------

void QtGrid::noteChanges(host::GridCell first, host::GridCell last) {
  if (!m_hasChanges) {
    m_firstChange = first;
    m_lastChange = last;
    m_hasChanges = true;
  } else {
    m_firstChange = {std::min(m_firstChange.row, first.row), std::min(m_firstChange.column, first.column)};
    m_lastChange = {std::max(m_lastChange.row, last.row), std::max(m_lastChange.column, last.column)};
  }
  refreshSoon();
}

void QtGrid::refreshSoon() {
  if (std::exchange(m_isRefreshDue, true))
    return;
  QMetaObject::invokeMethod(
      this, [this] { refresh(); }, Qt::QueuedConnection);
}

void QtGrid::refresh() {
  m_isRefreshDue = false;
  updateGeometries();
  viewport()->update();
  if (!std::exchange(m_hasChanges, false))
    return;
  const host::GridSize size = m_model->size();
  const host::GridCell last{std::min(m_lastChange.row, size.rows - 1), std::min(m_lastChange.column, size.columns - 1)};
  if (m_firstChange.row <= last.row && m_firstChange.column <= last.column)
    m_model->tellChanges(m_firstChange, last);
}

// --- Widths and heights ---------------------------------------------------------------------------------------------

void QtGrid::setWidth(int column, int twips) {
  m_widths.set(column, twips);
  applyWidth(column);
}

void QtGrid::applyWidths() {
  for (int column = 0; column < m_model->size().columns; ++column)
    applyWidth(column);
}

void QtGrid::applyWidth(int column) {
  const int width = pixels(m_widths.at(column));
  const QScopedValueRollback own(m_isOwnChange, true);
  if (column == 0)
    verticalHeader()->setFixedWidth(width);
  else
    horizontalHeader()->resizeSection(column - 1, width);
}

/// The user made a column wider or narrower.
void QtGrid::sectionMoved(int section, int pixels) {
  if (!m_isOwnChange)
    m_widths.set(section + 1, twipsOf(pixels, m_twipsPerPixel));
}

void QtGrid::setHeight(int row, int twips) {
  m_areHeightsGiven = true;
  m_heights.set(row, twips);
  if (row == 0) {
    applyHeaderHeight();
    return;
  }
  const bool isFirst = m_lastHeight < m_firstHeight;
  m_firstHeight = isFirst ? row : std::min(m_firstHeight, row);
  m_lastHeight = isFirst ? row : std::max(m_lastHeight, row);
  refreshSoon();
}

void QtGrid::setHeights(int twips) {
  m_areHeightsGiven = true;
  m_heights.setAll(twips);
  m_firstHeight = 0;
  m_lastHeight = m_model->size().rows - 1;
  applyHeaderHeight();
  refreshSoon();
}

void QtGrid::applyHeaderHeight() {
  horizontalHeader()->setFixedHeight(pixels(m_heights.at(0)));
}

/// Hands on all heights that changed, without a layout for each of them.
void QtGrid::applyHeights() {
  if (m_lastHeight < m_firstHeight)
    return;
  QHeaderView& header = *verticalHeader();
  const QSignalBlocker blocker(header);
  header.setUpdatesEnabled(false);
  if (const int usual = pixels(m_heights.usual()); usual != header.defaultSectionSize() || m_heights.areAllUsual())
    header.setDefaultSectionSize(usual);
  const int last = std::min(m_lastHeight, m_model->size().rows - 1);
  for (int row = std::max(m_firstHeight, 1); row <= last && !m_heights.areAllUsual(); ++row)
    header.resizeSection(row - 1, pixels(m_heights.at(row)));
  header.setUpdatesEnabled(true);
  m_firstHeight = 0;
  m_lastHeight = -1;
}

void QtGrid::updateGeometries() {
  applyHeights();
  QTableView::updateGeometries();
  verticalScrollBar()->setSingleStep(pixels(m_heights.usual()));
}

int QtGrid::topOf(int row) {
  if (row == 0)
    return 0;
  applyHeights();
  executeDelayedItemsLayout();
  return twipsOf(pixels(m_heights.at(0)) + verticalHeader()->sectionViewportPosition(row - 1), m_twipsPerPixel);
}

void QtGrid::setWrap(bool isWrapped) {
  m_delegate->setWrap(isWrapped);
  viewport()->update();
}

void QtGrid::scrollToFirst(host::GridCell cell) {
  executeDelayedItemsLayout();
  updateGeometries();
  verticalScrollBar()->setValue(verticalHeader()->sectionPosition(cell.row - 1));
  horizontalScrollBar()->setValue(horizontalHeader()->sectionPosition(cell.column - 1));
}

// --- Font and screen ------------------------------------------------------------------------------------------------

int QtGrid::usualHeight() const {
  return twipsOf(fontMetrics().height() + kBesideLine, m_twipsPerPixel);
}

void QtGrid::applyFont() {
  m_measure = TextMeasure(font());
  m_delegate->setMeasure(m_measure);
  if (m_areHeightsGiven)
    return;
  setHeights(usualHeight());
  m_areHeightsGiven = false;
}

/// The widget may have been made for another screen than the one it is on.
void QtGrid::followScreen() {
  const auto before = std::exchange(m_twipsPerPixel, imex::platform::twipsPerPixel(*this));
  if (before == m_twipsPerPixel)
    return;
  m_firstHeight = 0;
  m_lastHeight = m_model->size().rows - 1;
  applyWidths();
  applyFont();
  applyHeaderHeight();
}

void QtGrid::changeEvent(QEvent* event) {
  QTableView::changeEvent(event);
  if (event->type() != QEvent::FontChange)
    return;
  if (const QFont wanted = cellFont(font()); wanted != font())
    setFont(wanted); // comes back here
  else
    applyFont();
}

void QtGrid::showEvent(QShowEvent* event) {
  followScreen();
  QTableView::showEvent(event);
}

void QtGrid::paintEvent(QPaintEvent* event) {
  if (m_lastHeight >= m_firstHeight)
    updateGeometries();
  QTableView::paintEvent(event);
}

// --- The current cell -----------------------------------------------------------------------------------------------

void QtGrid::makeCurrent(host::GridCell cell) {
  takeCurrent(cell);
  if (isVisible())
    scrollTo(m_model->indexOf(cell));
}

void QtGrid::takeCurrent(host::GridCell cell) {
  applyHeights(); // the view scrolls to the cell
  const QScopedValueRollback own(m_isOwnChange, true);
  const QModelIndex index = m_model->indexOf(cell);
  m_current = cell;
  m_delegate->setCurrent(index);
  selectionModel()->setCurrentIndex(index, QItemSelectionModel::NoUpdate);
}

void QtGrid::userMoves(host::GridCell cell) {
  if (cell == m_current)
    return;
  m_cells.leaveCell.raise();
  takeCurrent(nearest(cell)); // a handler may have taken it away
  m_cells.enterCell.raise();
}

/// The view's current item changed. Where the grid did not do it, a screen reader did.
void QtGrid::viewMoved(const QModelIndex& index) {
  if (!m_isOwnChange && index.isValid())
    userMoves(GridModel::cellOf(index));
}

// --- Keys -----------------------------------------------------------------------------------------------------------

/// Tab comes to the handlers here, before the focus is moved by it.
bool QtGrid::event(QEvent* event) {
  if (isTab(*event)) {
    event->ignore();
    Q_EMIT keyPressed(static_cast<QKeyEvent&>(*event));
    if (event->isAccepted())
      return true;
    event->accept(); // as it came; otherwise the parent would move the focus once more
  }
  return QTableView::event(event);
}

void QtGrid::keyPressEvent(QKeyEvent* event) {
  event->ignore();
  if (isTab(*event))
    return;
  Q_EMIT keyPressed(*event);
  if (event->isAccepted())
    return;
  if (const auto cell = target(*event)) {
    event->accept();
    userMoves(*cell);
  }
}

/// Where a key leads; nothing for a key that does not move.
std::optional<host::GridCell> QtGrid::target(const QKeyEvent& event) {
  const host::GridSize size = m_model->size();
  const bool isOther = event.modifiers().testAnyFlags(Qt::AltModifier | Qt::MetaModifier);
  if (isOther || size.rows < 2 || size.columns < 2)
    return std::nullopt;
  const bool isFar = event.modifiers().testFlag(Qt::ControlModifier);
  const auto [row, column] = m_current;
  const int lastRow = size.rows - 1;
  const int lastColumn = size.columns - 1;
  switch (event.key()) {
  case Qt::Key_Left:
    return host::GridCell{row, isFar ? 1 : std::max(column - 1, 1)};
  case Qt::Key_Right:
    return host::GridCell{row, isFar ? lastColumn : std::min(column + 1, lastColumn)};
  case Qt::Key_Up:
    return host::GridCell{isFar ? 1 : std::max(row - 1, 1), column};
  case Qt::Key_Down:
    return host::GridCell{isFar ? lastRow : std::min(row + 1, lastRow), column};
  case Qt::Key_Home:
    return host::GridCell{isFar ? 1 : row, 1};
  case Qt::Key_End:
    return host::GridCell{isFar ? lastRow : row, lastColumn};
  case Qt::Key_PageUp:
    return isFar ? host::GridCell{1, column} : pageTarget(MovePageUp);
  case Qt::Key_PageDown:
    return isFar ? host::GridCell{lastRow, column} : pageTarget(MovePageDown);
  default:
    return std::nullopt;
  }
}

host::GridCell QtGrid::pageTarget(CursorAction action) {
  applyHeights();
  const QModelIndex index = moveCursor(action, Qt::NoModifier);
  return index.isValid() ? GridModel::cellOf(index) : m_current;
}

// --- Mouse and focus ------------------------------------------------------------------------------------------------

/// The corner and the headers are not the view's own area, but the grid has cells there.
bool QtGrid::eventFilter(QObject* watched, QEvent* event) {
  if (event->type() == QEvent::MouseButtonPress && watched != viewport()) {
    const auto& press = static_cast<const QMouseEvent&>(*event);
    Q_EMIT mousePressed(gridPoint(static_cast<QWidget&>(*watched), press.position().toPoint()), press.button(),
                        press.modifiers());
  }
  return QTableView::eventFilter(watched, event);
}

QPoint QtGrid::gridPoint(const QWidget& part, QPoint point) const {
  return part.mapTo(this, point) - QPoint(verticalHeader()->x(), horizontalHeader()->y());
}

void QtGrid::mousePressEvent(QMouseEvent* event) {
  const QModelIndex index = indexAt(event->position().toPoint());
  Q_EMIT mousePressed(gridPoint(*viewport(), event->position().toPoint()), event->button(), event->modifiers());
  event->accept();
  if (event->button() == Qt::LeftButton && index.isValid())
    userMoves(GridModel::cellOf(index));
}

void QtGrid::mouseMoveEvent(QMouseEvent* event) {
  event->accept(); // dragging chooses nothing
}

void QtGrid::mouseReleaseEvent(QMouseEvent* event) {
  event->accept();
}

void QtGrid::mouseDoubleClickEvent(QMouseEvent* event) {
  const QModelIndex index = indexAt(event->position().toPoint());
  const bool isCurrent = index.isValid() && GridModel::cellOf(index) == m_current;
  if (!isCurrent) {
    mousePressEvent(event);
    return;
  }
  event->accept();
  if (event->button() == Qt::LeftButton)
    Q_EMIT cellDoubleClicked();
}

void QtGrid::focusInEvent(QFocusEvent* event) {
  QTableView::focusInEvent(event);
  Q_EMIT focusChanged(true);
}

void QtGrid::focusOutEvent(QFocusEvent* event) {
  QTableView::focusOutEvent(event);
  Q_EMIT focusChanged(false);
}

} // namespace imex::platform
