#include "controls/ImExActionCtrl/ImExActionCtrl.h"

#include "controls/ImExActionCtrl/documents.h"
#include "host/Clipboard.h"
#include "host/Clock.h"
#include "host/MessageBox.h"
#include "host/OpenFileDialog.h"
#include "host/Services.h"
#include "host/Settings.h"
#include "module/ImExModule.h"
#include "runtime/paths.h"
#include "runtime/text.h"
#include "ui_ImExActionCtrl.h"

#include <QKeyEvent>

#include <optional>

namespace imex {

namespace {

constexpr std::string_view kDialogTitle = "Open File";
constexpr host::FileFilter kAllFiles{"All Files (*.*)", "*.*"};
constexpr host::FileFilter kTextFiles{"Text Files (*.txt)", "*.txt"};
constexpr host::FileFilter kCsvFiles{"CSV Files (*.csv)", "*.csv"};

constexpr std::string_view kOpenedForEdit = "Import file opened for edit.";

std::optional<host::ChosenFile> askForFile(const host::OpenFileQuestion& question) {
  return host::required(host::services().openFileDialog).show(question);
}

std::string documentationOf(ImExRequest& request, std::string_view prefix) {
  const std::string directory = host::required(host::services().settings).installationDirectory();
  const std::string type = request.DataType();
  return documentationPath(directory, prefix, type, request.DataOrigin());
}

bool isPlainEnter(const QKeyEvent& event) {
  const bool isEnter = event.key() == Qt::Key_Return || event.key() == Qt::Key_Enter;
  return isEnter && !(event.modifiers() & (Qt::ShiftModifier | Qt::ControlModifier | Qt::AltModifier));
}

bool isFileNotFound(const CaughtError& error) {
  return error.number == static_cast<int>(ErrorNumber::fileNotFound);
}

} // namespace

// --- The import file ------------------------------------------------------------------------------------------------

/// A cancelled dialog leaves everything as it was.
void ImExActionCtrl::cmdSelectFile_Click() {
  const Labels labels{"cmdSelectFile_Click", "cmdSelectFile", kClassName};
  tracedIn(
      *this, labels,
      [&] {
        const auto chosen =
            askForFile({kDialogTitle, {kAllFiles, kTextFiles, kCsvFiles}, ImExModule::workingDirectory()});
        if (!chosen)
          throw LeaveEarly();
        report({});
        const QString path = toQt(chosen->path());
        m_ui->txtFilePath->setText(path);
        CheckedFileName(path);
        request().Directory(chosen->directory);
      },
      ShowBox{"An error was encountered while attempting to select a file for import."});
}

/// Keys of txtFilePath. An Enter that was acted on goes no further, so that it does not press a button of the host too.
bool ImExActionCtrl::eventFilter(QObject* watched, QEvent* event) {
  if (watched != m_ui->txtFilePath || event->type() != QEvent::KeyPress)
    return QWidget::eventFilter(watched, event);
  const auto& key = static_cast<const QKeyEvent&>(*event);
  txtFilePath_KeyDown(key);
  return isPlainEnter(key);
}

void ImExActionCtrl::txtFilePath_KeyDown(const QKeyEvent& event) {
  handler("txtFilePath_KeyDown", [&] {
    if (isPlainEnter(event))
      openFile();
  });
}

/// Takes the file of txtFilePath, or asks for one where it is empty, as the request's file. False where the user
/// chooses none or something fails.
bool ImExActionCtrl::openFile() {
  return tracedIn(
      *this, {.name = "openFile", .errorName = "openFile()"},
      [&] {
        report({});
        if (m_ui->txtFilePath->text().isEmpty()) {
          const auto chosen = askForFile({kDialogTitle, {kTextFiles}});
          if (!chosen)
            throw LeaveEarly();
          m_ui->txtFilePath->setText(toQt(chosen->path()));
        }
        const std::string path = toCore(m_ui->txtFilePath->text());
        request().CheckedFileName(path);
        request().Directory(std::string(folderOf(path)));
        return true;
      },
      ShowBox{"An error was encountered while attempting to open a file to edit."});
}

// --- The editor -----------------------------------------------------------------------------------------------------

/// Traces under the name of another button, which trace readers expect.
void ImExActionCtrl::btnNew_Click() {
  const Labels labels{"cmdEditFile_Click", "btnNew_Click", kClassName};
  tracedIn(
      *this, labels,
      [&] {
        const host::LocalTime now = host::required(host::services().clock).now();
        const std::string path = ImExModule::workingDirectory() + newFileName(now);
        m_ui->txtFilePath->setText(toQt(path));
        report(kOpenedForEdit);
        raiseEditor(&ImExActionCtrl::newImportFile, path, 1);
      },
      ShowBox{});
}

void ImExActionCtrl::cmdEditFile_Click() {
  handler("cmdEditFile_Click", [&] {
    const std::string path = toCore(m_ui->txtFilePath->text());
    request().CheckedFileName(path);
    if (!request().checkFileForEdit())
      throw LeaveEarly();
    report(kOpenedForEdit);
    raiseEditor(&ImExActionCtrl::editImportFile, path, request().rowCount());
  });
}

/// Reads DataType and DataOrigin first, which refreshes the request's column count.
void ImExActionCtrl::raiseEditor(EditorSignal signal, const std::string& path, Integer rowCount) {
  const std::string type = toCore(DataType());
  const std::string key = type + toCore(DataOrigin());
  QString message = toQt(kOpenedForEdit);
  Integer columnCount = request().tabCount();
  QString fileName = toQt(path);
  StringsPtr headers = ImExModule::getFormatColumns(key);
  Integer delimiter = request().DelimiterAscii();
  Q_EMIT(this->*signal)(message, rowCount, columnCount, fileName, headers, delimiter);
}

/// Not traced, and without an ending for errors: they leave the event. Error 91 for a format that the catalogue does
/// not have.
void ImExActionCtrl::btnTemplate_Click() {
  host::Clipboard& clipboard = host::required(host::services().clipboard);
  clipboard.clear();
  const std::string type = request().DataType();
  const StringsPtr columns = ImExModule::getFormatColumns(type + request().DataOrigin());
  if (!columns)
    throw RuntimeError(ErrorNumber::objectVariableNotSet, kClassName);
  clipboard.setText(templateLine(*columns));
}

// --- Documents ------------------------------------------------------------------------------------------------------

void ImExActionCtrl::showDocument(const std::string& path) {
  QString document = toQt(path);
  Q_EMIT showDocs(document);
}

/// Error 53 where the page is missing.
void ImExActionCtrl::showDocumentation(const std::string& path) {
  if (!ImExModule::checkFileExists(path))
    throw RuntimeError(ErrorNumber::fileNotFound, kClassName);
  showDocument(path);
}

void ImExActionCtrl::cmdViewDocumentation_Click() {
  std::string path;
  tracedIn(
      *this, {.name = "cmdViewDocumentation_Click", .errorName = "cmdViewDocumentation_Click()"},
      [&] {
        path = documentationOf(request(), kSpecificationPrefix);
        showDocumentation(path);
      },
      [&](const CaughtError& error) {
        // The broken grammar is part of the text.
        ShowBox{"An error was encountered while view documentation file " + path +
                " using your Internet Browser."}(error);
      });
}

void ImExActionCtrl::btnMoreInfoWarnings_Click() {
  handler("btnMoreInfoWarnings_Click", [&] { cmdViewDocumentation_Click(); });
}

/// Differs from the others in its labels, in the title of its box and in its prompt for a missing page.
void ImExActionCtrl::btnMoreInfoTruncation_Click() {
  constexpr std::string_view name = "btnMoreInfoTruncation_Click";
  std::string path;
  tracedIn(
      *this, {name, name, name},
      [&] {
        path = documentationOf(request(), kMoreInformationPrefix);
        showDocumentation(path);
      },
      [&](const CaughtError& error) {
        std::string prompt(kDefaultFailurePrompt);
        if (isFileNotFound(error))
          prompt = "File not found: " + path + std::string(kLineBreak) + prompt;
        const std::string title = "Error: " + toText(error.number) + " - " + error.description;
        host::required(host::services().messageBox).show(prompt, host::kExclamationStyle, title);
      });
}

} // namespace imex
