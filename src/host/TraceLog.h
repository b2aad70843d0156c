#pragma once

#include "runtime/RuntimeError.h"
#include "runtime/export.h"

#include <cstdint>
#include <string_view>

namespace imex::host {

/// The host's trace log. One object serves one thread for the thread's life, so it needs no lock of its own state.
/// The component writes to it and never reads anything back; an error that it raises is an error of the procedure that
/// was being traced. The texts are valid during the call only.
class IMEX_EXPORT TraceLog {
 public:
  virtual ~TraceLog() = default;

  /// Records a caught error. `line` is the failing line, 0 where the build has no line labels.
  virtual void LogError(std::string_view source, std::string_view procedure, const RuntimeError& error,
                        std::int32_t line) = 0;

  /// Records the entry ("Entering Method...") or the exit ("Exiting Method...") of a procedure. `level` is 0.
  virtual void Trace(std::string_view source, std::string_view procedure, std::string_view message,
                     std::int32_t level) = 0;

  /// Records a caught error after which the procedure goes on.
  virtual void LogResumedError(std::string_view source, std::string_view procedure, const RuntimeError& error,
                               std::int32_t line) = 0;

  /// Whether Trace() does anything. A log that keeps errors alone says no, and is then told of nothing else.
  virtual bool takesTraces() const { return true; }
};

} // namespace imex::host
