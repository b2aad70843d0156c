// A host with every control in a window: controls_consumer APPLICATION-DIRECTORY. It installs the services, shows the
// window, and asks both sides whether they speak of the same component.

#include "controls/ImExActionCtrl/ImExActionCtrl.h"
#include "controls/ImExDocView/ImExDocView.h"
#include "controls/ImExFileEdit/ImExFileEdit.h"
#include "controls/ImtExViewCtrl/ImtExViewCtrl.h"
#include "host/Application.h"
#include "host/CurrentUser.h"
#include "host/Services.h"
#include "host/Settings.h"
#include "module/ImExModule.h"
#include "platform/clock/SystemClock.h"
#include "platform/files/DiskFiles.h"
#include "platform/qt/QtKeyboard.h"
#include "platform/qt/QtMessageBox.h"
#include "platform/soap/SoapServiceCall.h"
#include "platform/soap/SoapTransportFactory.h"
#include "platform/soap/errors.h"
#include "platform/trace/FileTraceLog.h"

#include <QApplication>
#include <QComboBox>
#include <QTemporaryDir>
#include <QVBoxLayout>

#include <filesystem>
#include <iostream>

namespace {

using namespace imex;

int failures = 0;

void expect(bool isTrue, const char* what) {
  if (isTrue)
    return;
  std::cerr << "not so: " << what << '\n';
  ++failures;
}

class Host : public host::Application, public host::Settings, public host::CurrentUser {
 public:
  explicit Host(std::string directory) : m_directory(std::move(directory)) {}
  std::string path() const override { return m_directory; }
  std::string installationDirectory() const override { return m_directory; }
  std::string securedAddress() const override { return "no address"; }
  std::string unsecuredAddress() const override { return "no address"; }
  std::int32_t timeout() const override { return 1'000; }
  std::string proxyPort() const override { return {}; }
  std::string name() const override { return "Ann Agent"; }
  std::string id() const override { return "agent1"; }

 private:
  std::string m_directory;
};

/// What the controls' library throws, the core's type as both know it.
void catchErrors(ImExActionCtrl& panel, host::TransportFactory& transports) {
  try {
    panel.setDataType(99);
    expect(false, "a position outside the list is refused");
  } catch (const RuntimeError& error) {
    expect(error.is(ErrorNumber::subscriptOutOfRange), "it is refused with error 9");
  }
  try {
    transports.createTransport()->send("no address", "text");
    expect(false, "a bad address is refused");
  } catch (const RuntimeError& error) {
    expect(error.number() == static_cast<std::int32_t>(platform::SoapError::badAddress), "a bad address is error 1010");
  }
}

void showEverything(host::TransportFactory& transports) {
  QWidget window;
  auto* layout = new QVBoxLayout(&window);
  auto* panel = new ImExActionCtrl;
  layout->addWidget(panel);
  layout->addWidget(new ImExDocView);
  layout->addWidget(new ImExFileEdit);
  layout->addWidget(new ImtExViewCtrl);
  window.show();
  panel->initializeClientToServer();
  expect(panel->isVisible(), "the panel is shown");
  const auto* types = panel->findChild<QComboBox*>(QStringLiteral("cmbDataType"));
  expect(types != nullptr && types->count() == 5, "the panel offers its data types");
  // The panel, in its library, read the catalogue; the program asks the core for it.
  expect(ImExModule::getFormatColumnCount("CUSTOMERAGENT") > 0, "there is one catalogue");
  expect(panel->DataType() == QStringLiteral("CUSTOMER"), "the panel chose customers");
  catchErrors(*panel, transports);
}

} // namespace

int main(int argc, char** argv) {
  const QApplication application(argc, argv);
  if (argc != 2)
    return 64;
  const QTemporaryDir folder;
  const std::string trace = folder.filePath(QStringLiteral("trace.log")).toStdString();
  Host host(argv[1]);
  platform::SystemClock clock;
  platform::DiskFiles files;
  platform::QtKeyboard keyboard;
  platform::QtMessageBox messageBox;
  platform::SoapTransportFactory transports;
  platform::SoapServiceCall serviceCall(transports, host);
  host::Services services;
  services.application = &host;
  services.settings = &host;
  services.currentUser = &host;
  services.clock = &clock;
  services.files = &files;
  services.keyboard = &keyboard;
  services.messageBox = &messageBox;
  services.transportFactory = &transports;
  services.serviceCall = &serviceCall;
  services.createTraceLog = [&trace] { return std::make_shared<platform::FileTraceLog>(trace); };
  host::install(services);
  showEverything(transports);
  expect(host::traceLog() != nullptr, "the trace log is the one that was installed");
  return failures == 0 ? 0 : 1;
}
