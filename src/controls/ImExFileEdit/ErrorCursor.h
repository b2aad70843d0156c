#pragma once

#include "records/ImportExportErrorBean.h"
#include "request/ImExRequest.h"

#include <optional>
#include <string>

namespace imex {

/// Hands out the messages about a file row by row. They are to be sorted by row, upwards: a message that comes behind
/// one of a later row waits for that row and is lost by then.
class ErrorCursor {
 public:
  /// Error 91 for a null list or, when it is reached, for a null message.
  explicit ErrorCursor(ErrorBeansPtr errors);

  /// The next message about `row`; nothing where there is none left. Rows are asked for upwards.
  std::optional<std::string> next(int row);

 private:
  const ImportExportErrorBean& at(std::size_t position) const;

  ErrorBeansPtr m_errors;
  std::size_t m_position = 1; ///< of the first message that was not passed yet
};

} // namespace imex
