#include "controls/ImExActionCtrl/ImExActionCtrl.h"

#include "controls/ImExActionCtrl/choices.h"
#include "controls/common/DropDownList.h"
#include "controls/common/ownEvent.h"
#include "host/MessageBox.h"
#include "host/Services.h"
#include "request/shared.h"
#include "ui_ImExActionCtrl.h"

#include <QButtonGroup>
#include <QEvent>

namespace imex {

namespace {

constexpr int kStatusLines = 5; // what is always seen of the status

} // namespace

// --- Construction ---------------------------------------------------------------------------------------------------

ImExActionCtrl::ImExActionCtrl(QWidget* parent) : QWidget(parent), m_ui(std::make_unique<Ui::ImExActionCtrl>()) {
  m_ui->setupUi(this);
  askForFont();
  connectControls();
  UserControl_Resize();
}

ImExActionCtrl::~ImExActionCtrl() = default;

/// The panel's font is "MS Sans Serif"; where there is none, the host's own font takes its place.
void ImExActionCtrl::askForFont() {
  QFont wanted = font();
  wanted.setFamilies(QStringList{QStringLiteral("MS Sans Serif")} + wanted.families());
  setFont(wanted);
  QPlainTextEdit& status = *m_ui->txtValidationResults;
  status.setMinimumHeight(kStatusLines * status.fontMetrics().lineSpacing() + 2 * status.frameWidth());
}

void ImExActionCtrl::connectControls() {
  const auto onClick = [this](QAbstractButton* button, void (ImExActionCtrl::*clicked)()) {
    connect(button, &QAbstractButton::clicked, this, [this, clicked] {
      if (!m_isSending)
        runAsEvent([&] { (this->*clicked)(); });
    });
  };
  // A click runs the handler, also on an option that is marked already; so does any other way to mark one, such as a
  // screen reader's. The option that loses its mark runs none.
  const auto onIndex = [this](QButtonGroup* options, void (ImExActionCtrl::*clicked)(int)) {
    const auto run = [this, clicked](int index) { runAsEvent([&] { (this->*clicked)(index); }); };
    connect(options, &QButtonGroup::idPressed, this, [this] { m_isOptionPressed = true; });
    connect(options, &QButtonGroup::idReleased, this, [this] { m_isOptionPressed = false; });
    connect(options, &QButtonGroup::idClicked, this, run);
    connect(options, &QButtonGroup::idToggled, this, [this, run](int index, bool isMarked) {
      if (isMarked && !m_isOptionPressed)
        run(index);
    });
  };
  connect(m_ui->cmbDataType, &DropDownList::chosen, this, &ImExActionCtrl::cmbDataType_Click);
  connect(m_ui->cmbDataOrigin, &DropDownList::chosen, this, &ImExActionCtrl::cmbDataOrigin_Click);
  connect(m_ui->cmbDelimiter, &DropDownList::chosen, this, &ImExActionCtrl::cmbDelimiter_Click);

  m_ui->optWarnings->setId(m_ui->optWarnings_0, 0);
  m_ui->optWarnings->setId(m_ui->optWarnings_1, 1);
  m_ui->optTruncation->setId(m_ui->optTruncation_0, 0);
  m_ui->optTruncation->setId(m_ui->optTruncation_1, 1);
  onIndex(m_ui->optWarnings, &ImExActionCtrl::optWarnings_Click);
  onIndex(m_ui->optTruncation, &ImExActionCtrl::optTruncation_Click);

  onClick(m_ui->cmdSelectFile, &ImExActionCtrl::cmdSelectFile_Click);
  onClick(m_ui->btnNew, &ImExActionCtrl::btnNew_Click);
  onClick(m_ui->btnTemplate, &ImExActionCtrl::btnTemplate_Click);
  onClick(m_ui->cmdEditFile, &ImExActionCtrl::cmdEditFile_Click);
  onClick(m_ui->cmdImportExport, &ImExActionCtrl::cmdImportExport_Click);
  onClick(m_ui->cmdViewErrors, &ImExActionCtrl::cmdViewErrors_Click);
  onClick(m_ui->cmdViewDocumentation, &ImExActionCtrl::cmdViewDocumentation_Click);
  onClick(m_ui->btnMoreInfoWarnings, &ImExActionCtrl::btnMoreInfoWarnings_Click);
  onClick(m_ui->btnMoreInfoTruncation, &ImExActionCtrl::btnMoreInfoTruncation_Click);
  onClick(m_ui->cmdExit, &ImExActionCtrl::cmdExit_Click);
  m_ui->txtFilePath->installEventFilter(this);
}

// --- Size -----------------------------------------------------------------------------------------------------------

QSize ImExActionCtrl::sizeHint() const {
  return m_ui->frameMain->sizeHint();
}

QSize ImExActionCtrl::minimumSizeHint() const {
  return m_ui->frameMain->minimumSizeHint();
}

/// The frame is no part of a layout of the panel, so what it says about its size is passed on here.
bool ImExActionCtrl::event(QEvent* event) {
  if (event->type() == QEvent::LayoutRequest)
    updateGeometry();
  return QWidget::event(event);
}

void ImExActionCtrl::resizeEvent(QResizeEvent* /*event*/) {
  UserControl_Resize();
}

void ImExActionCtrl::UserControl_Resize() {
  constexpr std::string_view procedure = "UserControl_Resize()";
  QFrame& frame = *m_ui->frameMain;
  resumeNext(*this, procedure, [&] { frame.resize(width(), frame.height()); });
  resumeNext(*this, procedure, [&] { frame.resize(frame.width(), height()); });
}

// --- What the procedures share --------------------------------------------------------------------------------------

ImExRequest& ImExActionCtrl::request() const {
  if (!m_imExRequest)
    throw RuntimeError(ErrorNumber::objectVariableNotSet, kClassName);
  return *m_imExRequest;
}

std::string ImExActionCtrl::dataTypeText() const {
  return toCore(m_ui->cmbDataType->currentText());
}

/// Tells the user something in the status box.
void ImExActionCtrl::report(std::string_view text) {
  m_ui->txtValidationResults->setPlainText(toQt(text));
}

// --- Choices --------------------------------------------------------------------------------------------------------

void ImExActionCtrl::cmbDataType_Click() {
  handler("cmbDataType_Click", [&] {
    if (const auto code = dataTypeCode(dataTypeText()))
      request().DataType(std::string(*code));
  });
}

/// Not traced, and without an ending for errors: they leave the event.
void ImExActionCtrl::cmbDataOrigin_Click() {
  if (const auto code = dataOriginCode(toCore(m_ui->cmbDataOrigin->currentText())))
    request().DataOrigin(std::string(*code));
}

void ImExActionCtrl::cmbDelimiter_Click() {
  handler("cmbDelimiter_Click", [&] {
    if (const auto code = delimiterCode(m_ui->cmbDelimiter->listIndex()))
      request().Delimiter(std::string(*code));
  });
}

void ImExActionCtrl::optTruncation_Click(int index) {
  handler("optTruncation_Click", [&] { request().AllowTruncation(index == 0); });
}

void ImExActionCtrl::optWarnings_Click(int index) {
  handler("optWarnings_Click", [&] {
    const bool areAllowed = index == 1;
    request().AllowWarnings(areAllowed);
    const std::string_view notice = updateNotice(dataTypeText());
    if (areAllowed && !notice.empty())
      host::required(host::services().messageBox).show(notice, host::kExclamationStyle, kMaintenanceTitle);
  });
}

} // namespace imex
