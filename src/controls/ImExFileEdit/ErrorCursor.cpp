#include "controls/ImExFileEdit/ErrorCursor.h"

#include <utility>

namespace imex {

ErrorCursor::ErrorCursor(ErrorBeansPtr errors) : m_errors(std::move(errors)) {
  if (!m_errors)
    throw RuntimeError(ErrorNumber::objectVariableNotSet, "ImExFileEdit");
}

const ImportExportErrorBean& ErrorCursor::at(std::size_t position) const {
  const auto& error = m_errors->item(position);
  if (!error)
    throw RuntimeError(ErrorNumber::objectVariableNotSet, "ImExFileEdit");
  return *error;
}

/// A message of an earlier row cannot match any more, so it is passed for good.
std::optional<std::string> ErrorCursor::next(int row) {
  for (; m_position <= m_errors->count(); ++m_position) {
    const ImportExportErrorBean& error = at(m_position);
    const int errorRow = error.RowNumber();
    if (errorRow > row)
      return std::nullopt;
    if (errorRow == row) {
      ++m_position;
      return error.RowError();
    }
  }
  return std::nullopt;
}

} // namespace imex
