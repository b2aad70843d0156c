// A window with the import panel, and what a host has to supply for it.
//
//   minimal_host APPLICATION-DIRECTORY SECURED-ADDRESS UNSECURED-ADDRESS USER-ID
//
// The application directory holds "docs" with the format files. Choose a file, press Import, and read the verdicts in
// the panel; the results page lies beside the file.

#include "controls/ImExActionCtrl/ImExActionCtrl.h"
#include "controls/ImExDocView/ImExDocView.h"
#include "host/Application.h"
#include "host/CurrentUser.h"
#include "host/Services.h"
#include "host/Settings.h"
#include "platform/clock/SystemClock.h"
#include "platform/files/DiskFiles.h"
#include "platform/qt/QtBrowserLauncher.h"
#include "platform/qt/QtClipboard.h"
#include "platform/qt/QtMessageBox.h"
#include "platform/qt/QtOpenFileDialog.h"
#include "platform/qt/QtProgressDisplay.h"
#include "platform/soap/SoapServiceCall.h"
#include "platform/soap/SoapTransportFactory.h"

#include <QApplication>
#include <QMainWindow>

#include <iostream>

/// What the component asks the host about itself, from the command line.
class CommandLineHost : public imex::host::Application, public imex::host::Settings, public imex::host::CurrentUser {
 public:
  explicit CommandLineHost(const QStringList& arguments) : m_arguments(arguments) {}

  std::string path() const override { return text(1); }
  std::string installationDirectory() const override { return text(1); }
  std::string securedAddress() const override { return text(2); }
  std::string unsecuredAddress() const override { return text(3); }
  std::int32_t timeout() const override { return 30'000; }
  std::string proxyPort() const override { return {}; }
  std::string name() const override { return text(4); }
  std::string id() const override { return text(4); }

 private:
  std::string text(int position) const { return m_arguments.at(position).toStdString(); }

  QStringList m_arguments;
};

int main(int argc, char** argv) {
  const QApplication application(argc, argv);
  if (QApplication::arguments().size() != 5) {
    std::cerr << "usage: minimal_host APPLICATION-DIRECTORY SECURED-ADDRESS UNSECURED-ADDRESS USER-ID\n";
    return 64;
  }

  // The services live as long as the component is used. Those that are left out are not needed by the panel.
  CommandLineHost host(QApplication::arguments());
  imex::platform::SystemClock clock;
  imex::platform::DiskFiles files;
  imex::platform::QtMessageBox messageBox;
  imex::platform::QtOpenFileDialog openFileDialog;
  imex::platform::QtClipboard clipboard;
  imex::platform::QtBrowserLauncher browser;
  imex::platform::SoapTransportFactory transports;
  imex::platform::SoapServiceCall serviceCall(transports, host);
  imex::host::Services services;
  services.application = &host;
  services.settings = &host;
  services.currentUser = &host;
  services.clock = &clock;
  services.files = &files;
  services.messageBox = &messageBox;
  services.openFileDialog = &openFileDialog;
  services.clipboard = &clipboard;
  services.browserLauncher = &browser;
  services.transportFactory = &transports;
  services.serviceCall = &serviceCall;
  services.createProgressDisplay = [] { return std::make_unique<imex::platform::QtProgressDisplay>(); };
  imex::host::install(services);

  QMainWindow window;
  auto* panel = new imex::ImExActionCtrl;
  window.setCentralWidget(panel);
  QObject::connect(panel, &imex::ImExActionCtrl::exitMaintenance, &window, &QWidget::close);
  // A window of its own for documents; it hides when the user presses OK.
  imex::ImExDocView viewer;
  QObject::connect(&viewer, &imex::ImExDocView::closed, &viewer, &QWidget::hide);
  QObject::connect(panel, &imex::ImExActionCtrl::showDocs, &viewer, [&viewer](QString& page) {
    viewer.showDoc(page);
    viewer.show();
  });
  window.show();
  panel->initializeClientToServer();
  return QApplication::exec();
}
