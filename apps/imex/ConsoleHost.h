#pragma once

#include "Options.h"

#include <memory>
#include <string>

namespace imex::cli {

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

  /// Why the last procedure failed, where the text for the user says only that it did: "Permission denied (error 70)".
  /// Empty where none has failed.
  std::string lastError() const;

  /// Whether a box has asked the user something.
  bool hasAskedQuestion() const;

  /// How many errors were recorded so far.
  int errorCount() const;

  /// Why the file cannot be read, "File not found (error 53)"; empty where it can be opened.
  std::string openingError(const std::string& path) const;

 private:
  struct Services;
  std::unique_ptr<Services> m_services;
};

} // namespace imex::cli
