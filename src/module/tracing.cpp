#include "module/tracing.h"

#include "host/MessageBox.h"
#include "host/TraceLog.h"

namespace imex {

void ShowBox::operator()(const CaughtError& error) const {
  const std::string_view text = prompt.empty() ? kDefaultFailurePrompt : std::string_view(prompt);
  host::required(host::services().messageBox).show(text, host::kExclamationStyle, error.title());
}

bool isTracing() {
  const host::TraceLog* log = host::traceLog();
  return log != nullptr && log->takesTraces();
}

namespace detail {

namespace {

constexpr std::int32_t kLevel = 0;
constexpr std::int32_t kNoLine = 0; // procedures carry no line labels

} // namespace

void trace(const Procedure& procedure, std::string_view text, std::string_view message) {
  if (host::TraceLog* log = host::traceLog())
    log->Trace(procedure.source, text, message, kLevel);
}

CaughtError record(const Procedure& procedure) {
  const RuntimeError error = currentError();
  CaughtError caught{error.number(), error.source(), error.description()};
  const std::string_view source = procedure.errorSource.empty() ? procedure.source : procedure.errorSource;
  const std::string_view name = procedure.errorName.empty() ? procedure.name : procedure.errorName;
  if (host::TraceLog* log = host::traceLog())
    log->LogError(source, name, error, kNoLine);
  return caught;
}

} // namespace detail

} // namespace imex
