#pragma once

#include "host/TraceLog.h"
#include "runtime/export.h"

#include <memory>
#include <string>
#include <vector>

namespace imex::platform {

/// A trace log in a file, one line a call: time, level, source, procedure, message, separated by tabs. Errors are
/// written with the level "error" (those after which the procedure went on: "warning") and a message of number, source
/// and description. A background thread writes, so that tracing does not wait for the disk; the file starts anew in a
/// numbered one when it reaches 64 MiB, and three old ones are kept.
///
/// A new file can be read and written by its owner alone; an existing one keeps its permissions.
///
/// Control characters in the texts are written as `\n`, `\r`, `\t` and `\xNN`, so that a call is always one line.
class IMEX_EXPORT FileTraceLog : public host::TraceLog {
 public:
  /// Appends to the file at `path`. Error 57 where it cannot be opened, with a description that names it: a folder that
  /// is missing is not made, and what is no regular file (a pipe, a device) is not written to.
  explicit FileTraceLog(const std::string& path);
  /// Waits until everything is written.
  ~FileTraceLog() override;

  /// The names of all files that a log at `path` writes, renames and removes: its own and the numbered ones.
  static std::vector<std::string> files(const std::string& path);

  /// Waits until everything is written and closes the file; calls that come later are not written any more. Returns why
  /// the file lacks something, in a sentence without a full stop that names it; empty where it has everything.
  std::string finish();

  void LogError(std::string_view source, std::string_view procedure, const RuntimeError& error,
                std::int32_t line) override;
  void Trace(std::string_view source, std::string_view procedure, std::string_view message,
             std::int32_t level) override;
  void LogResumedError(std::string_view source, std::string_view procedure, const RuntimeError& error,
                       std::int32_t line) override;

 private:
  struct Writer;
  std::unique_ptr<Writer> m_writer; ///< null when finished
  std::string m_failure;
};

} // namespace imex::platform
