#include "host/Services.h"

#include "host/TraceLog.h"

#include <utility>

namespace imex::host {

namespace {

Services installed;
bool isTracing = false;
unsigned installations = 0;

/// The trace log of one thread, and the installation that it was made for.
struct ThreadLog {
  std::shared_ptr<TraceLog> log;
  unsigned installation = 0;
};

ThreadLog& threadLog() {
  thread_local ThreadLog log;
  return log;
}

} // namespace

void install(Services services) {
  installed = std::move(services);
  isTracing = static_cast<bool>(installed.createTraceLog);
  ++installations;
}

const Services& services() {
  return installed;
}

TraceLog* traceLog() {
  if (!isTracing)
    return nullptr;
  ThreadLog& mine = threadLog();
  if (mine.installation != installations)
    mine = {installed.createTraceLog(), installations};
  return mine.log.get();
}

} // namespace imex::host
