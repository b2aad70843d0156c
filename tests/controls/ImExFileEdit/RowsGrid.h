#pragma once

#include "harness/TextGrid.h"
#include "support/texts.h"

#include <algorithm>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

namespace imex::test {

/// A grid of given rows, without a window. The bytes of a row are handed out in memory of exactly their size, so that
/// who reads behind them is caught.
class RowsGrid : public fuzz::TextGrid {
 public:
  /// Each row with its number first; row 0 has no texts.
  explicit RowsGrid(const std::vector<Texts>& rows, int columns)
      : TextGrid(static_cast<int>(rows.size()) + 1, columns) {
    for (std::size_t row = 0; row < rows.size(); ++row) {
      const std::vector<std::string_view> texts(rows[row].begin(), rows[row].end());
      setTexts({static_cast<int>(row) + 1, 0}, texts);
    }
  }

  host::RowTexts texts(int row) const override {
    const host::RowTexts all = TextGrid::texts(row);
    m_bytes = std::make_unique<char[]>(all.bytes.size());
    std::copy(all.bytes.begin(), all.bytes.end(), m_bytes.get());
    return {{m_bytes.get(), all.bytes.size()}, all.ends};
  }

  /// The texts of a row, empty cells too.
  Texts row(int number) const {
    Texts all;
    for (int column = 0; column < size().columns; ++column)
      all.emplace_back(text({number, column}));
    return all;
  }

 private:
  mutable std::unique_ptr<char[]> m_bytes;
};

} // namespace imex::test
