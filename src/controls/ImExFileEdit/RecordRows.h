#pragma once

#include "host/Grid.h"

#include <string_view>
#include <vector>

namespace imex {

/// Shows the records of a file in the rows of a grid, one after the other from row 1 on: the row's number in the first
/// column, and a field in each of the others.
class RecordRows {
 public:
  /// How the fields of a record fit into a row.
  enum class Fit {
    whole,  ///< a record of fewer fields leaves the rest of its row as it is
    cut,    ///< there were more fields than columns; those beyond are left out
    nothing ///< the record has no field
  };

  /// Both outlive the object. The delimiter has at least one byte.
  RecordRows(host::Grid& grid, std::string_view delimiter) : m_grid(grid), m_delimiter(delimiter) {}

  /// Fills the next row. Error 9 where the grid has no more.
  Fit show(std::string_view record);

 private:
  host::Grid& m_grid;
  std::string_view m_delimiter;
  int m_row = 0;
  std::vector<std::string_view> m_texts; ///< of one row, in memory that is used again
};

} // namespace imex
