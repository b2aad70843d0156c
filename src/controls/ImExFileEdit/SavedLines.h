#pragma once

#include "host/Grid.h"

#include <string>
#include <string_view>

namespace imex {

/// Takes the lines that a grid is saved as, one after the other: for each row from 1 on the texts of its columns from 1
/// on, with the delimiter between them. A row without any text gives no line. Line breaks inside texts are taken out as
/// removeLineBreaks() does it.
class SavedLines {
 public:
  /// `fields` columns are saved. The grid outlives the object and is not changed meanwhile.
  SavedLines(const host::Grid& grid, int fields, std::string delimiter);

  /// Sets `line` to the next one and returns true; returns false where there are no more. The text is valid until the
  /// next call.
  bool next(std::string_view& line);

 private:
  char* appendDelimiter(char* end) const;
  bool joinRow(int row);

  const host::Grid& m_grid;
  int m_rows;
  int m_fields;
  std::string m_delimiter;
  int m_row = 0; ///< the one taken last
  std::string m_line;
};

} // namespace imex
