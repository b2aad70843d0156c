#include "desk/DeskHost.h"

#include "host/Services.h"
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
#include "platform/trace/FileTraceLog.h"

namespace imex::desk {

struct DeskHost::Services {
  explicit Services(DeskSettings& deskSettings) : settings(deskSettings), serviceCall(transports, deskSettings) {}

  host::Services all();

  DeskSettings& settings;
  platform::SystemClock clock;
  platform::QtMessageBox messageBox;
  platform::QtOpenFileDialog openFileDialog;
  platform::QtClipboard clipboard;
  platform::QtKeyboard keyboard;
  platform::QtBrowserLauncher browser;
  platform::DiskFiles files;
  platform::SoapTransportFactory transports;
  platform::SoapServiceCall serviceCall;
  std::shared_ptr<platform::FileTraceLog> trace;
};

host::Services DeskHost::Services::all() {
  host::Services services;
  services.application = &settings;
  services.settings = &settings;
  services.currentUser = &settings;
  services.clock = &clock;
  services.messageBox = &messageBox;
  services.openFileDialog = &openFileDialog;
  services.clipboard = &clipboard;
  services.keyboard = &keyboard;
  services.browserLauncher = &browser;
  services.files = &files;
  services.transportFactory = &transports;
  services.serviceCall = &serviceCall;
  services.createProgressDisplay = [] { return std::make_unique<platform::QtProgressDisplay>(); };
  return services;
}

DeskHost::DeskHost(DeskSettings& settings) : m_services(std::make_unique<Services>(settings)) {
  host::install(m_services->all());
}

DeskHost::~DeskHost() {
  host::install({});
}

void DeskHost::startTrace() {
  if (m_services->settings.traceFile().empty())
    return;
  const auto log = std::make_shared<platform::FileTraceLog>(m_services->settings.traceFile());
  m_services->trace = log;
  host::Services services = m_services->all();
  services.createTraceLog = [log] { return log; };
  host::install(std::move(services));
}

std::string DeskHost::finishTrace() {
  return m_services->trace ? m_services->trace->finish() : std::string();
}

} // namespace imex::desk
