// A window with the four controls, and what a host has to supply for them.
//
//   minimal_host APPLICATION-DIRECTORY SECURED-ADDRESS UNSECURED-ADDRESS USER-ID
//
// The application directory holds "docs" with the format files and the specification pages. Choose a file on the page
// Import and press Import: the verdicts are shown beside the lines, and the results page lies beside the file. The page
// Quote takes line items from a file.

#include "controls/ImExActionCtrl/ImExActionCtrl.h"
#include "controls/ImExDocView/ImExDocView.h"
#include "controls/ImExFileEdit/ImExFileEdit.h"
#include "controls/ImtExViewCtrl/ImtExViewCtrl.h"
#include "host/Application.h"
#include "host/CurrentUser.h"
#include "host/Services.h"
#include "host/Settings.h"
#include "platform/clock/SystemClock.h"
#include "platform/files/DiskFiles.h"
#include "platform/qt/QtBrowserLauncher.h"
#include "platform/qt/QtClipboard.h"
#include "platform/qt/QtKeyboard.h"
#include "platform/qt/QtMessageBox.h"
#include "platform/qt/QtOpenFileDialog.h"
#include "platform/qt/QtProgressDisplay.h"
#include "platform/soap/SoapServiceCall.h"
#include "platform/soap/SoapTransportFactory.h"

#include <QApplication>
#include <QCloseEvent>
#include <QDir>
#include <QMessageBox>
#include <QPushButton>
#include <QSplitter>
#include <QTabWidget>
#include <QTableWidget>

#include <clocale>
#include <filesystem>
#include <functional>
#include <iostream>
#include <locale>
#include <memory>
#include <stdexcept>
#include <string>

namespace {

using namespace imex;

// --- What the component asks the host -------------------------------------------------------------------------------

/// Settings and user, from the command line.
class CommandLineHost : public host::Application, public host::Settings, public host::CurrentUser {
 public:
  explicit CommandLineHost(char** arguments)
      : m_directory(std::filesystem::absolute(arguments[1]).string()), // the component changes the current directory
        m_secured(arguments[2]), m_unsecured(arguments[3]), m_userId(arguments[4]) {}

  std::string path() const override { return m_directory; }
  std::string installationDirectory() const override { return m_directory; }
  std::string securedAddress() const override { return m_secured; }
  std::string unsecuredAddress() const override { return m_unsecured; }
  std::int32_t timeout() const override { return 30'000; }
  std::string proxyPort() const override { return {}; }
  std::string name() const override { return m_userId; }
  std::string id() const override { return m_userId; }

 private:
  std::string m_directory;
  std::string m_secured;
  std::string m_unsecured;
  std::string m_userId;
};

/// The services, most of them as they come. They live as long as the component is used.
class HostServices {
 public:
  explicit HostServices(CommandLineHost& commandLine) : m_serviceCall(m_transports, commandLine) {
    host::Services services;
    services.application = &commandLine;
    services.settings = &commandLine;
    services.currentUser = &commandLine;
    services.clock = &m_clock;
    services.files = &m_files;
    services.messageBox = &m_messageBox;
    services.openFileDialog = &m_openFileDialog;
    services.clipboard = &m_clipboard;
    services.keyboard = &m_keyboard;
    services.browserLauncher = &m_browserLauncher;
    services.transportFactory = &m_transports;
    services.serviceCall = &m_serviceCall;
    services.createProgressDisplay = [] { return std::make_unique<platform::QtProgressDisplay>(); };
    host::install(std::move(services));
  }
  ~HostServices() { host::install({}); }
  HostServices(const HostServices&) = delete;
  HostServices& operator=(const HostServices&) = delete;

 private:
  platform::SystemClock m_clock;
  platform::DiskFiles m_files;
  platform::QtMessageBox m_messageBox;
  platform::QtOpenFileDialog m_openFileDialog;
  platform::QtClipboard m_clipboard;
  platform::QtKeyboard m_keyboard;
  platform::QtBrowserLauncher m_browserLauncher;
  platform::SoapTransportFactory m_transports;
  platform::SoapServiceCall m_serviceCall;
};

/// Meets the errors that leave an event: those of the few handlers of the panel that show no box themselves.
class HostApplication : public QApplication {
 public:
  using QApplication::QApplication;

  bool notify(QObject* receiver, QEvent* event) override {
    try {
      return QApplication::notify(receiver, event);
    } catch (const std::exception&) {
      const RuntimeError error = currentError();
      QMessageBox::warning(activeWindow(), "Corvana", QString::fromStdString(error.description()));
      return false;
    }
  }
};

// --- The window -----------------------------------------------------------------------------------------------------

class Window : public QTabWidget {
 public:
  explicit Window(const CommandLineHost& commandLine) : m_user(QString::fromStdString(commandLine.name())) {
    addPages();
    connectPanel(*m_import);
    connectPanel(*m_quote);
    connectEditor();
    connect(m_quote, &ImExActionCtrl::insertQuoteLineItems, this, [this](QuoteLineItemsPtr& items) {
      for (const auto& item : *items)
        insertLine(*item);
    });
    connect(m_viewer, &ImExDocView::closed, this, [this] { setCurrentIndex(m_panelPage); });
  }

  /// Once the window is there, because a format file that cannot be read is told of in a box.
  void start() {
    m_import->initializeClientToServer();
    m_quote->initializeClientToClient();
    for (ImExActionCtrl* panel : {m_import, m_quote}) {
      panel->Requestor(m_user);
      panel->LoginReqd(false);
      panel->isCentralizedAgent = false;
    }
    m_quote->setDataType(1); // quote line items
  }

 protected:
  void closeEvent(QCloseEvent* event) override { event->setAccepted(isEditorFree()); }

 private:
  void addPages() {
    auto* quotePage = new QSplitter(Qt::Vertical);
    quotePage->addWidget(m_lines);
    quotePage->addWidget(m_quote);
    m_lines->setHorizontalHeaderLabels({"Quantity", "Type", "Brand", "Catalog Number", "Price"});
    addTab(m_import, "Import");
    addTab(quotePage, "Quote");
    addTab(m_editor, "Editor");
    addTab(m_viewer, "Document");
    addTab(new ImtExViewCtrl, "Jobs");
    m_editor->setEnabled(false);
  }

  void connectPanel(ImExActionCtrl& panel) {
    connect(&panel, &ImExActionCtrl::exitMaintenance, this, &QWidget::close);
    connect(&panel, &ImExActionCtrl::showDocs, this, [this](QString& page) {
      m_viewer->showDoc(page);
      setCurrentWidget(m_viewer);
    });
    connect(&panel, &ImExActionCtrl::editImportFile, this,
            [this](QString& /*message*/, Integer& rows, Integer& columns, QString& file, StringsPtr& headers,
                   Integer& delimiter) {
              describeFile(file, rows, columns, headers, delimiter);
              openEditor([&] { m_editor->loadGrid(); });
            });
    connect(&panel, &ImExActionCtrl::newImportFile, this,
            [this](QString& /*message*/, Integer& rows, Integer& columns, QString& file, StringsPtr& headers,
                   Integer& delimiter) {
              describeFile(file, rows, columns, headers, delimiter);
              openEditor([&] {
                m_editor->loadGridHeader();
                m_editor->resizeRows();
              });
            });
    connect(&panel, &ImExActionCtrl::showErrors, this,
            [this](QString& file, RowsPtr& lines, ErrorBeansPtr& messages, Integer& rows, Integer& columns,
                   StringsPtr& headers, Integer& delimiter) {
              requireFreeEditor();
              openEditor(
                  [&] { m_editor->loadGridWithErrors(file, lines, messages, rows, columns, headers, delimiter); });
            });
    allowRetry(panel);
  }

  void connectEditor() {
    connect(m_editor, &ImExFileEdit::saved, this, [this] { closeEditor(); });
    connect(m_editor, &ImExFileEdit::cancel, this, [this] { closeEditor(); });
  }

  /// An exchange that fails leaves the panel's button disabled and its pointer an hourglass. Connected after the
  /// panel's own handler, and so called after it.
  static void allowRetry(ImExActionCtrl& panel) {
    auto* button = panel.findChild<QPushButton*>("cmdImportExport");
    connect(button, &QPushButton::clicked, &panel, [&panel, button] {
      button->setEnabled(true);
      panel.unsetCursor();
    });
  }

  /// What the editor's next load does, and where Save writes.
  void describeFile(const QString& file, Integer rows, Integer columns, const StringsPtr& headers, Integer delimiter) {
    requireFreeEditor();
    m_editor->fileName(file);
    m_editor->NumberRows(rows);
    m_editor->NumberColumns(columns);
    m_editor->HeaderCollection(headers);
    m_editor->DelimiterAscii(delimiter);
  }

  void openEditor(const std::function<void()>& load) {
    load();
    m_panelPage = currentIndex();
    m_editor->setEnabled(true);
    setCurrentWidget(m_editor);
    m_editor->reset();
  }

  void closeEditor() {
    m_editor->setEnabled(false);
    setCurrentIndex(m_panelPage);
  }

  /// False where a file waits in the editor to be saved, which is then shown.
  bool isEditorFree() {
    if (m_editor->isEnabled())
      setCurrentWidget(m_editor);
    return !m_editor->isEnabled();
  }

  /// The panel shows the error in a box.
  void requireFreeEditor() {
    constexpr int kEditorInUse = 2001;
    if (!isEditorFree())
      throw RuntimeError(kEditorInUse, "Window", "Save or cancel the file in the editor first");
  }

  void insertLine(const ImportQuoteLIneItemBean& item) {
    const int row = m_lines->rowCount();
    m_lines->insertRow(row);
    int column = 0;
    for (const std::string& text :
         {item.quantity(), item.AType(), item.Brand(), item.CatalogNumber(), item.Column1Price()})
      m_lines->setItem(row, column++, new QTableWidgetItem(QString::fromStdString(text)));
  }

  QString m_user;
  // Children of the window.
  ImExActionCtrl* m_import = new ImExActionCtrl;
  ImExActionCtrl* m_quote = new ImExActionCtrl;
  QTableWidget* m_lines = new QTableWidget(0, 5);
  ImExFileEdit* m_editor = new ImExFileEdit;
  ImExDocView* m_viewer = new ImExDocView;
  int m_panelPage = 0; ///< where the user came from
};

/// Numbers in files are read by the rules of the user's locale, where the machine has it.
void useLocaleOfUser() {
  try {
    std::locale::global(std::locale(""));
  } catch (const std::runtime_error&) {
    return;
  }
}

} // namespace

int main(int argc, char** argv) {
  if (argc != 5) {
    std::cerr << "usage: minimal_host APPLICATION-DIRECTORY SECURED-ADDRESS UNSECURED-ADDRESS USER-ID\n";
    return 64;
  }
  CommandLineHost commandLine(argv);
  useLocaleOfUser();
  const HostApplication application(argc, argv);
  std::setlocale(LC_NUMERIC, "C"); // the toolkit asks for the user's; C functions are to read and write "1.5"
  const HostServices services(commandLine);
  Window window(commandLine);
  window.show();
  window.start();
  return HostApplication::exec();
}
