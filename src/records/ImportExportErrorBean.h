#pragma once

#include "runtime/Integer.h"
#include "runtime/export.h"

#include <string>

namespace imex {

/// One message about one row of the import file.
class IMEX_EXPORT ImportExportErrorBean {
 public:
  /// The row of the file that the message belongs to.
  void RowNumber(const Integer& value);
  Integer RowNumber() const;

  /// What is wrong with the row.
  void RowError(std::string value);
  std::string RowError() const;

 private:
  Integer m_rowNumber;
  std::string m_rowError;
};

} // namespace imex
