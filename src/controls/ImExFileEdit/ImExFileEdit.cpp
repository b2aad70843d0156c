#include "controls/ImExFileEdit/ImExFileEdit.h"

#include "controls/ImExFileEdit/editorLayout.h"
#include "controls/ImExFileEdit/keyCodes.h"
#include "controls/common/ownEvent.h"
#include "ui_ImExFileEdit.h"

#include <QKeyEvent>
#include <QLabel>

namespace imex {

namespace {

constexpr QSize kUsualSize{720, 400};
constexpr QSize kLeastSize{240, 160}; // both buttons, the edit line and a few rows

} // namespace

// --- Construction ---------------------------------------------------------------------------------------------------

ImExFileEdit::ImExFileEdit(QWidget* parent) : QWidget(parent), m_ui(std::make_unique<Ui::ImExFileEdit>()) {
  m_ui->setupUi(this);
  addCellLabel();
  connectGrid();
  connectParts();
  setFocusProxy(m_ui->MSFlexGrid1);
  nameEditCell();
}

ImExFileEdit::~ImExFileEdit() = default;

/// The label takes no room of its own: the layout reserves none beside the edit line.
void ImExFileEdit::addCellLabel() {
  m_cellLabel = new QLabel(m_ui->txtChangeField);
  m_cellLabel->setObjectName(QStringLiteral("lblEditCell"));
  m_cellLabel->setBuddy(m_ui->txtChangeField);
  m_cellLabel->setAlignment(Qt::AlignCenter);
  m_cellLabel->setAutoFillBackground(true);
  m_cellLabel->setBackgroundRole(QPalette::Button);
  m_cellLabel->setForegroundRole(QPalette::ButtonText);
  m_cellLabel->setCursor(Qt::ArrowCursor);
}

void ImExFileEdit::connectGrid() {
  using platform::QtGrid;
  connect(m_ui->MSFlexGrid1, &QtGrid::keyPressed, this, &ImExFileEdit::gridKeyPressed);
  connect(m_ui->MSFlexGrid1, &QtGrid::mousePressed, this, &ImExFileEdit::gridMousePressed);
  connect(m_ui->MSFlexGrid1, &QtGrid::focusChanged, this, &ImExFileEdit::gridFocusChanged);
  connect(m_ui->MSFlexGrid1, &QtGrid::cellDoubleClicked, this,
          [this] { runAsEvent([this] { MSFlexGrid1_DblClick(); }); });
  grid().leaveCell.connect([this] { runAsEvent([this] { MSFlexGrid1_LeaveCell(); }); });
  grid().enterCell.connect([this] { runAsEvent([this] { MSFlexGrid1_EnterCell(); }); });
}

void ImExFileEdit::connectParts() {
  const auto onClick = [this](QAbstractButton* button, void (ImExFileEdit::*clicked)()) {
    connect(button, &QAbstractButton::clicked, this, [this, clicked] { runAsEvent([&] { (this->*clicked)(); }); });
  };
  onClick(m_ui->cmdOK, &ImExFileEdit::cmdOK_Click);
  onClick(m_ui->cmdCancel, &ImExFileEdit::cmdCancel_Click);
  connect(m_ui->txtChangeField, &QLineEdit::textEdited, this, [this] { runAsEvent([this] { lineEdited(); }); });
  m_ui->txtChangeField->installEventFilter(this);
  m_ui->cmdCancel->installEventFilter(this);
}

bool ImExFileEdit::eventFilter(QObject* watched, QEvent* event) {
  if (watched == m_ui->txtChangeField)
    return filterLine(event);
  if (watched == m_ui->cmdCancel && event->type() == QEvent::KeyPress)
    return cancelKeyPressed(static_cast<const QKeyEvent&>(*event));
  return QWidget::eventFilter(watched, event);
}

// --- Cancel ---------------------------------------------------------------------------------------------------------

/// A host may let the control go when it hears of it, so nothing comes after that.
void ImExFileEdit::cmdCancel_Click() {
  handler("cmdCancel_Click", kDefaultFailurePrompt, [&] { Q_EMIT cancel(); });
}

/// True for a key that goes no further.
bool ImExFileEdit::cancelKeyPressed(const QKeyEvent& event) {
  const KeyStroke stroke = keyStroke(event);
  const bool isTab = stroke == KeyStroke{kTabKey, kNoShift};
  runAsEvent([&] { cmdCancel_KeyDown(isTab); });
  return isTab;
}

void ImExFileEdit::cmdCancel_KeyDown(bool isTab) {
  handler("cmdCancel_KeyDown", kDefaultFailurePrompt, [&] {
    if (isTab)
      m_ui->txtChangeField->setFocus(Qt::TabFocusReason);
  });
}

// --- Size -----------------------------------------------------------------------------------------------------------

QSize ImExFileEdit::sizeHint() const {
  return kUsualSize;
}

QSize ImExFileEdit::minimumSizeHint() const {
  return kLeastSize;
}

void ImExFileEdit::resizeEvent(QResizeEvent* /*event*/) {
  UserControl_Resize();
}

void ImExFileEdit::UserControl_Resize() {
  const auto setWidth = [](QWidget& part, int width) { part.resize(requiredMeasure(width), part.height()); };
  const auto setHeight = [](QWidget& part, int height) { part.resize(part.width(), requiredMeasure(height)); };
  QWidget& save = *m_ui->cmdOK;
  QWidget& giveUp = *m_ui->cmdCancel;
  QWidget& rows = *m_ui->MSFlexGrid1;
  tracedResize(
      *this, [&] { setWidth(*m_ui->txtChangeField, partWidth(width())); }, [&] { rows.move(kGridLeft, rows.y()); },
      [&] { setWidth(rows, partWidth(width())); }, [&] { setHeight(rows, gridHeight(height())); },
      [&] { save.move(save.x(), buttonTop(height(), save.height())); },
      [&] { save.move(saveLeft(width(), save.width()), save.y()); }, [&] { giveUp.move(giveUp.x(), save.y()); },
      [&] { giveUp.move(cancelLeft(width()), giveUp.y()); });
}

} // namespace imex
