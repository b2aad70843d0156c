#pragma once

#include "runtime/RuntimeError.h"
#include "runtime/export.h"

#include <functional>
#include <memory>

namespace imex::host {

class Application;
class BrowserLauncher;
class Clipboard;
class Clock;
class CurrentUser;
class Files;
class Keyboard;
class MessageBox;
class OpenFileDialog;
class ProgressDisplay;
class ServiceCall;
class Settings;
class TraceLog;
class TransportFactory;

/// What the host and the platform supply. The program fills one and installs it once, before it uses the component; a
/// service that is left out makes the procedures that need it fail with error 429. The objects are the program's and
/// outlive the component's use of them.
struct Services {
  Application* application = nullptr;           ///< where the formats are, and the title of boxes
  Settings* settings = nullptr;                 ///< addresses, time-out, proxy, specification pages
  CurrentUser* currentUser = nullptr;           ///< who imports
  Clock* clock = nullptr;                       ///< the names of the panel's new files
  MessageBox* messageBox = nullptr;             ///< what the user is told and asked
  OpenFileDialog* openFileDialog = nullptr;     ///< the panel's Browse
  Clipboard* clipboard = nullptr;               ///< the panel's Template
  BrowserLauncher* browserLauncher = nullptr;   ///< the results page
  Files* files = nullptr;                       ///< every file
  TransportFactory* transportFactory = nullptr; ///< the instant road
  ServiceCall* serviceCall = nullptr;           ///< the road of ImExRequest::send()
  Keyboard* keyboard = nullptr;                 ///< the editor's moves

  /// Makes the progress display of one operation. Left empty, no progress is shown.
  std::function<std::unique_ptr<ProgressDisplay>()> createProgressDisplay;

  /// Makes the trace log of one thread, on the thread's first traced procedure. Left empty, nothing is traced.
  std::function<std::shared_ptr<TraceLog>()> createTraceLog;
};

/// Replaces the services of the process. Called on the thread that uses the component.
IMEX_EXPORT void install(Services services);

/// The installed services.
IMEX_EXPORT const Services& services();

/// The trace log of this thread; null where none is installed, at the cost of one branch.
IMEX_EXPORT TraceLog* traceLog();

/// The service itself. Error 429 where it was not supplied: `host::required(services().files)`.
template <class Service>
Service& required(Service* service) {
  if (service == nullptr)
    throw RuntimeError(ErrorNumber::cannotCreateObject);
  return *service;
}

} // namespace imex::host
