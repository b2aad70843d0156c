#include "controls/ImExActionCtrl/ImExActionCtrl.h"

#include "controls/ImExActionCtrl/choices.h"
#include "controls/common/dropWaitingInput.h"
#include "host/MessageBox.h"
#include "host/ProgressDisplay.h"
#include "host/Services.h"
#include "request/shared.h"
#include "ui_ImExActionCtrl.h"

#include <QPointer>

#include <memory>

namespace imex {

namespace {

void showInformation(std::string_view prompt) {
  host::required(host::services().messageBox).show(prompt, host::kInformationStyle, kMaintenanceTitle);
}

void tellThatNothingIsOffered() {
  showInformation("The Import / Export request is not yet offered. Please make another selection.");
}

/// The host's progress display with the texts of an import; null where the host has none.
std::unique_ptr<host::ProgressDisplay> showProgress() {
  const auto& create = host::services().createProgressDisplay;
  std::unique_ptr<host::ProgressDisplay> display = create ? create() : nullptr;
  if (display)
    display->show("Corvana", "Performing Import...", "");
  return display;
}

/// Whether a list has an item; null is the answer of a procedure that has told the user why there is none.
template <class T>
bool hasItems(const CollectionPtr<T>& list) {
  return list && !list->isEmpty();
}

template <class Items>
void insertItems(ImExActionCtrl& panel, Items items, void (ImExActionCtrl::*signal)(Items&)) {
  if (hasItems(items))
    Q_EMIT(panel.*signal)(items);
}

/// Hands over what the second reading gives.
template <class Read, class Items>
void insertReadTwice(ImExActionCtrl& panel, const Read& read, void (ImExActionCtrl::*signal)(Items&)) {
  if (hasItems(read()))
    insertItems(panel, read(), signal);
}

} // namespace

/// Says while it lives that an import is being sent. The panel may go first.
class ImExActionCtrl::Sending {
 public:
  explicit Sending(ImExActionCtrl& panel) : m_panel(&panel) { panel.m_isSending = true; }
  ~Sending() {
    if (m_panel)
      m_panel->m_isSending = false;
  }
  Sending(const Sending&) = delete;
  Sending& operator=(const Sending&) = delete;

 private:
  QPointer<ImExActionCtrl> m_panel;
};

// --- The buttons ----------------------------------------------------------------------------------------------------

/// Its errors are recorded under the labels of two buttons, which trace readers expect.
void ImExActionCtrl::cmdImportExport_Click() {
  const Labels labels{"cmdImportExport_Click", "cmdExit_Click", "cmdImportExport_Click"};
  tracedIn(
      *this, labels,
      [&] {
        if (!openFile())
          return;
        const bool mayBeSent = request().checkFileForEdit();
        cmbDataType_Click();
        if (!mayBeSent)
          return;
        if (clientToServerTaskReady())
          importToServer();
        else if (clientToClientTaskReady())
          importToHost();
        else
          tellThatNothingIsOffered();
      },
      ShowBox{});
}

/// Where sending fails, the button stays disabled and the pointer an hourglass, until a reply or the next import. A
/// handler of the host may delete the panel while the request sends.
void ImExActionCtrl::importToServer() {
  const QPointer<ImExActionCtrl> self = this;
  const bool hadFocus = m_ui->cmdImportExport->hasFocus();
  report({});
  m_ui->cmdImportExport->setEnabled(false);
  {
    const std::unique_ptr<host::ProgressDisplay> progress = showProgress();
    setCursor(Qt::WaitCursor);
    const std::shared_ptr<ImExRequest> sent = m_imExRequest; // a handler may call a mode method
    sent->isCentralizedAgent = isCentralizedAgent;
    const Sending sending(*this);
    sent->send();
    dropWaitingInput(); // of a user who would not wait
  }
  if (!self)
    throw LeaveEarly();
  restoreImport();
  if (hadFocus && isFocusUnclaimed())
    m_ui->cmdImportExport->setFocus();
}

/// Whether the focus is where the disabled button left it. A handler may have moved it, to an editor with the messages.
bool ImExActionCtrl::isFocusUnclaimed() const {
  const QWidget* focus = window()->focusWidget();
  return isVisible() && (focus == nullptr || isAncestorOf(focus));
}

void ImExActionCtrl::restoreImport() {
  m_ui->cmdImportExport->setEnabled(true);
  unsetCursor();
}

/// Project and quote files are read twice, order files once, as it has always been.
void ImExActionCtrl::importToHost() {
  const std::shared_ptr<ImExRequest> read = m_imExRequest; // a handler may call a mode method
  const std::string type = dataTypeText();
  if (type == kProjectLineItems)
    insertReadTwice(
        *this, [&] { return read->serializeProjectLineItemFile(); }, &ImExActionCtrl::insertProjectLineItems);
  else if (type == kQuoteLineItems)
    insertReadTwice(
        *this, [&] { return read->serializeQuoteLineItemFile(); }, &ImExActionCtrl::insertQuoteLineItems);
  else if (type == kOrderLineItems)
    insertItems(*this, read->serializeOrderLineItemFile(), &ImExActionCtrl::insertOrderLineItems);
  else
    tellThatNothingIsOffered();
}

void ImExActionCtrl::cmdViewErrors_Click() {
  std::string path;
  tracedIn(
      *this, {.name = "cmdViewErrors_Click", .errorName = "cmdViewErrors_Click()"},
      [&] {
        const std::string directory = request().Directory();
        if (directory.empty()) {
          showInformation("You may review errors and warnings from the last import in the directory where the import "
                          "data resided in file validationresults.html.");
          return;
        }
        path = directory + std::string(kResultsPageName);
        showDocument(path);
      },
      [&](const CaughtError& error) {
        ShowBox{"An error was encountered while attempting to view the import results file " + path +
                " using your Internet Browser."}(error);
      });
}

/// The one button whose error shows no box.
void ImExActionCtrl::cmdExit_Click() {
  handler(
      "cmdExit_Click", [&] { Q_EMIT exitMaintenance(); }, Ignore{});
}

// --- Readiness ------------------------------------------------------------------------------------------------------

bool ImExActionCtrl::clientToServerTaskReady() {
  return hostCalled("clientToServerTaskReady", [&] { return isClientToServerType(dataTypeText()); });
}

bool ImExActionCtrl::clientToClientTaskReady() {
  return hostCalled("clientToClientTaskReady", [&] { return isClientToClientType(dataTypeText()); });
}

// --- The request's events -------------------------------------------------------------------------------------------

void ImExActionCtrl::mImExRequest_MessageReceived(const std::shared_ptr<ImExReply>& reply) {
  handler("mImExRequest_MessageReceived", [&] {
    report(reply->reply());
    restoreImport();
  });
}

void ImExActionCtrl::mImExRequest_SerializationFailed(const std::string& message) {
  handler("mImExRequest_SerializationFailed",
          [&] { showInformation(message + " If the problem persists please contact technical support."); });
}

void ImExActionCtrl::mImExRequest_editImportFile(const std::string& message, Integer rowCount, Integer columnCount,
                                                 const std::string& fileName, StringsPtr headers,
                                                 Integer delimiterAscii) {
  QString text = toQt(message);
  QString file = toQt(fileName);
  tracedIn(
      *this, {.name = "mImExRequest_editImportFile", .errorName = "mImExRequest_editImportFile()"},
      [&] { Q_EMIT editImportFile(text, rowCount, columnCount, file, headers, delimiterAscii); },
      [&](const CaughtError& error) {
        ShowBox{"An error was encountered while editing file " + toCore(file) + "."}(error);
      });
}

void ImExActionCtrl::mImExRequest_showErrors(const std::string& fileName, RowsPtr lines, ErrorBeansPtr rows,
                                             Integer rowCount, Integer columnCount, StringsPtr headers,
                                             Integer delimiterAscii) {
  QString file = toQt(fileName);
  handler("mImExRequest_showErrors",
          [&] { Q_EMIT showErrors(file, lines, rows, rowCount, columnCount, headers, delimiterAscii); });
}

} // namespace imex
