#pragma once

#include "Options.h"
#include "runtime/RuntimeError.h"

#include <memory>
#include <optional>
#include <string>

namespace imex::cli {

/// "Permission denied (error 70)".
std::string reasonOf(const RuntimeError& error);

/// The host's services of a program without a window, from its options. Boxes are written to standard error, a question
/// is answered No unless the options say Yes, and pages are not opened. The services are installed for the life of the
/// object.
class ConsoleHost {
 public:
  /// Error 57 where the trace file cannot be opened.
  explicit ConsoleHost(const Options& options);
  ~ConsoleHost();
  ConsoleHost(const ConsoleHost&) = delete;
  ConsoleHost& operator=(const ConsoleHost&) = delete;

  /// The error that was recorded last: it says why, where the text for the user says only that something failed.
  std::optional<RuntimeError> lastError() const;

  /// Whether a box has asked the user something.
  bool hasAskedQuestion() const;

  /// The text of the box that was shown last, empty where none was.
  const std::string& lastPrompt() const;

  /// How many errors were recorded so far.
  int errorCount() const;

  /// Why the file cannot be read to its end; nothing where it can.
  static std::optional<RuntimeError> readingError(const std::string& path);

 private:
  struct Services;
  std::unique_ptr<Services> m_services;
};

} // namespace imex::cli
