#include "controls/ImExActionCtrl/ImExActionCtrl.h"

#include "controls/ImExActionCtrl/choices.h"
#include "controls/common/DropDownList.h"
#include "module/ImExModule.h"
#include "ui_ImExActionCtrl.h"

#include <QButtonGroup>
#include <QPointer>
#include <QSignalBlocker>

#include <span>

namespace imex {

namespace {

constexpr int kAgentFormat = 1;
constexpr int kAllowTruncation = 0;
constexpr int kForbidTruncation = 1;
constexpr int kForbidWarnings = 0;

void append(DropDownList& list, std::span<const Choice> choices) {
  for (const Choice& choice : choices)
    list.append(toQt(choice.text));
}

/// Adds the texts and chooses one.
void offer(DropDownList& list, std::span<const Choice> choices, int index) {
  append(list, choices);
  list.setListIndex(index);
}

/// Keeps the user from the list altogether.
void fix(DropDownList& list) {
  list.setLocked(true);
  list.setEnabled(false);
}

void disable(const QButtonGroup& options) {
  for (QAbstractButton* option : options.buttons())
    option->setEnabled(false);
}

} // namespace

void ImExActionCtrl::createRequest() {
  m_imExRequest = std::make_shared<ImExRequest>();
  connectRequest();
}

/// A request that is sending outlives a panel that a handler deletes; what it still tells is then heard by nobody.
void ImExActionCtrl::connectRequest() {
  const auto connectTo = [this](auto& event, auto heard) {
    event.connect([self = QPointer(this), heard](const auto&... arguments) {
      if (self)
        (self->*heard)(arguments...);
    });
  };
  ImExRequest& request = *m_imExRequest;
  connectTo(request.MessageReceived, &ImExActionCtrl::mImExRequest_MessageReceived);
  connectTo(request.SerializationFailed, &ImExActionCtrl::mImExRequest_SerializationFailed);
  connectTo(request.editImportFile, &ImExActionCtrl::mImExRequest_editImportFile);
  connectTo(request.showErrors, &ImExActionCtrl::mImExRequest_showErrors);
}

/// Marks an option as code does it: the handler runs whether the option was marked before or not.
void ImExActionCtrl::setTruncation(int index) {
  const QSignalBlocker once(m_ui->optTruncation);
  m_ui->optTruncation->button(index)->setChecked(true);
  optTruncation_Click(index);
}

void ImExActionCtrl::setWarnings(int index) {
  const QSignalBlocker once(m_ui->optWarnings);
  m_ui->optWarnings->button(index)->setChecked(true);
  optWarnings_Click(index);
}

/// Builds the catalogue, and gives the request the column count of its format.
void ImExActionCtrl::startModule() {
  ImExModule::initialize();
  const std::string key = toCore(DataType() + DataOrigin());
  request().tabCount(ImExModule::getFormatColumnCount(key));
}

void ImExActionCtrl::initializeClientToServer() {
  hostCalled("initializeClientToServer", [&] {
    createRequest();
    offer(*m_ui->cmbDelimiter, kDelimiters, 0);
    offer(*m_ui->cmbSchedule, kSchedules, 0);
    m_ui->cmbSchedule->setLocked(true);
    offer(*m_ui->cmbImportExport, kActions, 0);
    m_ui->cmbImportExport->setLocked(true);
    offer(*m_ui->cmbDataOrigin, kDataOrigins, kAgentFormat);
    // At the front, so that the first of them is the one that is chosen, whatever an earlier mode call left.
    int position = 0;
    for (const Choice& choice : kClientToServerTypes)
      m_ui->cmbDataType->insert(position++, toQt(choice.text));
    m_ui->cmbDataType->setListIndex(0);

    request().ImportExport("IMPORT");
    request().DataType("CUSTOMER");
    request().DataOrigin("AGENT");
    request().Schedule("INSTANT");
    request().Delimiter("TAB");

    m_ui->cmdSelectFile->setVisible(true);
    setTruncation(kAllowTruncation);
    setWarnings(kForbidWarnings);
    startModule();
  });
}

void ImExActionCtrl::initializeClientToClient() {
  hostCalled("initializeClientToClient", [&] {
    createRequest();
    offer(*m_ui->cmbDelimiter, kDelimiters, 0);
    offer(*m_ui->cmbSchedule, std::span(kSchedules).first(1), 0);
    fix(*m_ui->cmbSchedule);
    offer(*m_ui->cmbImportExport, kActions, 0);
    fix(*m_ui->cmbImportExport);
    offer(*m_ui->cmbDataOrigin, kDataOrigins, kAgentFormat);
    fix(*m_ui->cmbDataOrigin);
    append(*m_ui->cmbDataType, kClientToClientTypes);

    request().ImportExport("IMPORT");
    request().DataOrigin("AGENT");
    request().Schedule("INSTANT");
    request().Delimiter("TAB");

    m_ui->cmdSelectFile->setVisible(true);
    setTruncation(kForbidTruncation);
    disable(*m_ui->optTruncation);
    setWarnings(kForbidWarnings);
    disable(*m_ui->optWarnings);
    m_ui->cmdViewErrors->setVisible(false);
    startModule();
  });
}

} // namespace imex
