#include "platform/qt/GridTexts.h"
#include "harness/fuzz.h"

#include <string>
#include <vector>

// The grid's compact store of texts holds what a plain one holds, whatever is done to both. Each step of a run is made
// of some bytes: what to do, where, and a text.

namespace {

using namespace imex;
using Rows = std::vector<std::vector<std::string>>;

/// Takes the bytes of a run one after the other; zeros behind the last.
class Bytes {
 public:
  explicit Bytes(std::string_view bytes) : m_rest(bytes) {}

  bool isEmpty() const { return m_rest.empty(); }
  int below(int limit) {
    const int byte = m_rest.empty() ? 0 : static_cast<unsigned char>(m_rest.front());
    m_rest.remove_prefix(m_rest.empty() ? 0 : 1);
    return byte % limit;
  }
  std::string_view text(int size) {
    const std::string_view text = m_rest.substr(0, static_cast<std::size_t>(size));
    m_rest.remove_prefix(text.size());
    return text;
  }

 private:
  std::string_view m_rest;
};

constexpr int kMost = 12; // rows or columns

void requireSame(const platform::GridTexts& texts, const Rows& rows) {
  fuzz::require(std::cmp_equal(texts.rows(), rows.size()), "there are as many rows");
  for (std::size_t row = 0; row < rows.size(); ++row) {
    for (std::size_t column = 0; column < rows[row].size(); ++column)
      fuzz::require(texts.text(static_cast<int>(row), static_cast<int>(column)) == rows[row][column],
                    "each text is there");
  }
}

void step(Bytes& bytes, platform::GridTexts& texts, Rows& rows) {
  const auto at = [](int index) { return static_cast<std::size_t>(index); };
  switch (bytes.below(16)) {
  case 0:
    texts.clear();
    for (auto& row : rows)
      row.assign(row.size(), {});
    break;
  case 1: {
    const int height = 1 + bytes.below(kMost);
    const int width = 1 + bytes.below(kMost);
    texts.setSize(height, width);
    rows.resize(at(height));
    for (auto& row : rows)
      row.resize(at(width));
    break;
  }
  case 2:
    if (rows.size() > 1) {
      const int row = bytes.below(texts.rows());
      texts.removeRow(row);
      rows.erase(rows.begin() + row);
    }
    break;
  case 3: {
    const int row = bytes.below(texts.rows());
    const int first = bytes.below(texts.columns());
    std::vector<std::string_view> given(at(bytes.below(texts.columns() - first + 1)));
    for (std::size_t i = 0; i < given.size(); ++i)
      rows[at(row)][at(first) + i] = given[i] = bytes.text(bytes.below(40));
    texts.setTexts(row, first, given);
    break;
  }
  default: {
    const int row = bytes.below(texts.rows());
    const int column = bytes.below(texts.columns());
    if (bytes.below(8) == 0) { // a text of the grid itself is a text like any other
      const int otherRow = bytes.below(texts.rows());
      const int otherColumn = bytes.below(texts.columns());
      texts.setText(row, column, texts.text(otherRow, otherColumn));
      rows[at(row)][at(column)] = std::string(rows[at(otherRow)][at(otherColumn)]);
    } else {
      const std::string_view text = bytes.text(bytes.below(40));
      texts.setText(row, column, text);
      rows[at(row)][at(column)] = text;
    }
  }
  }
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  Bytes bytes(fuzz::text(data, size));
  const int height = 1 + bytes.below(kMost);
  const int width = 1 + bytes.below(kMost);
  platform::GridTexts texts(height, width);
  Rows rows(static_cast<std::size_t>(height), std::vector<std::string>(static_cast<std::size_t>(width)));
  while (!bytes.isEmpty()) {
    step(bytes, texts, rows);
    requireSame(texts, rows);
  }
  return 0;
}
