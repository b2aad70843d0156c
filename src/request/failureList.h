#pragma once

#include "runtime/Integer.h"

#include <string>

namespace imex {

/// The numbers of the failing lines for the status message: "3,17,18". A text of 50 characters or more takes no
/// further number; the next one ends it with " and others.", and the list is finished.
class FailureList {
 public:
  /// Adds a number. False where that finished the list; nothing is added afterwards.
  bool add(Integer lineNumber);

  const std::string& text() const { return m_text; }

 private:
  std::string m_text;
  bool m_isFull = false;
};

} // namespace imex
