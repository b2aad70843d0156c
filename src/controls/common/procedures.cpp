#include "controls/common/procedures.h"

#include "host/Services.h"
#include "host/TraceLog.h"
#include "runtime/Integer.h"

#include <cstdint>

namespace imex::detail {

namespace {

constexpr std::int32_t kNoLine = 0; // procedures carry no line labels

} // namespace

void recordResumed(const QObject& control, std::string_view procedure) {
  const RuntimeError error = currentError();
  [[maybe_unused]] const Integer number = error.number(); // the convention keeps it in 16 bits
  if (host::TraceLog* log = host::traceLog())
    log->LogResumedError(toCore(control.objectName()), procedure, error, kNoLine);
}

} // namespace imex::detail
