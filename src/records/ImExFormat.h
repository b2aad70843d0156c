#pragma once

#include "runtime/Boolean.h"
#include "runtime/Collection.h"
#include "runtime/Integer.h"
#include "runtime/export.h"

#include <string>

namespace imex {

/// The import service's verdict on one line of the import file.
class IMEX_EXPORT ImExFormat {
 public:
  /// The error texts and the warning texts of the line, null until they are first used.
  StringsPtr cErrors;
  StringsPtr cWarnings;

  /// The number of the line as the service gives it.
  Integer LineNumber() const;
  void LineNumber(Integer value);

  /// The text of the line as the service gives it.
  std::string Line() const;
  void Line(std::string value);

  /// cErrors and cWarnings, made empty first where they are null. Never null; the same list at every call.
  StringsPtr errors();
  StringsPtr Warnings();

  /// Appends a text to cWarnings or cErrors, which are made where they are null.
  void addWarning(std::string warning);
  void addError(std::string error);

  /// Whether the service accepted the line.
  Boolean ActionSuccessful() const;
  void ActionSuccessful(const Boolean& value);

  /// Whether all texts of the record are ASCII. No accessor of the host's interface, so it is not traced.
  friend bool isAscii(const ImExFormat& format);

  /// The line itself, without a trace as well.
  friend const std::string& lineOf(const ImExFormat& format) { return format.m_line; }

 private:
  Integer m_lineNumber;
  std::string m_line;
  bool m_isLineAscii = true; ///< found out when the line is set, and its bytes have just been touched
  Boolean m_actionSuccessful;
};

IMEX_EXPORT bool isAscii(const ImExFormat& format);
const std::string& lineOf(const ImExFormat& format);

/// Whether there is no text in the list. A list that was never used need not be made for that.
inline bool isEmpty(const StringsPtr& texts) {
  return !texts || texts->isEmpty();
}

} // namespace imex
