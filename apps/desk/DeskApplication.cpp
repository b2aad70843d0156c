#include "desk/DeskApplication.h"

#include "desk/panels.h"
#include "host/Services.h"
#include "host/TraceLog.h"

#include <exception>

namespace imex::desk {

bool DeskApplication::notify(QObject* receiver, QEvent* event) {
  try {
    return QApplication::notify(receiver, event);
  } catch (const std::exception&) {
    const RuntimeError error = currentError();
    if (host::TraceLog* log = host::traceLog())
      log->LogError("DeskApplication", "notify", error, 0);
    showError(error);
    return false;
  }
}

} // namespace imex::desk
