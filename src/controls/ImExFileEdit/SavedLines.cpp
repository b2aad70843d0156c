#include "controls/ImExFileEdit/SavedLines.h"

#include "controls/ImExFileEdit/savedLine.h"

#include <algorithm>
#include <cstddef>
#include <cstring>
#include <utility>

namespace imex {

namespace {

constexpr std::size_t kPiece = 16;

char* append(char* end, std::string_view text) {
  return std::copy(text.begin(), text.end(), end);
}

/// Appends a text of a row of texts. Most are short: for those a piece of one size is copied, where the row has so many
/// bytes, and what is too much of it is written over by what follows.
char* appendOfRow(char* end, std::string_view text, std::string_view row) {
  if (text.empty()) // and then no part of the row
    return end;
  const auto left = static_cast<std::size_t>(row.data() + row.size() - text.data());
  if (text.size() > kPiece || left < kPiece)
    return append(end, text);
  std::memcpy(end, text.data(), kPiece);
  return end + text.size();
}

} // namespace

SavedLines::SavedLines(const host::Grid& grid, int fields, std::string delimiter)
    : m_grid(grid), m_rows(grid.size().rows), m_fields(std::max(fields, 0)), m_delimiter(std::move(delimiter)) {}

char* SavedLines::appendDelimiter(char* end) const {
  if (m_delimiter.size() != 1)
    return append(end, m_delimiter);
  *end = m_delimiter.front();
  return end + 1;
}

/// Joins the texts of a row. False where all of them are empty.
bool SavedLines::joinRow(int row) {
  const host::RowTexts texts = m_grid.texts(row);
  m_line.resize(texts.bytes.size() + static_cast<std::size_t>(m_fields) * m_delimiter.size() + kPiece);
  char* end = m_line.data();
  std::size_t textSize = 0;
  for (int column = 1; column <= m_fields; ++column) {
    if (column > 1)
      end = appendDelimiter(end);
    const std::string_view text = texts[column];
    end = appendOfRow(end, text, texts.bytes);
    textSize += text.size();
  }
  m_line.resize(static_cast<std::size_t>(end - m_line.data()));
  return textSize > 0;
}

bool SavedLines::next(std::string_view& line) {
  while (++m_row < m_rows) {
    if (!joinRow(m_row))
      continue;
    removeLineBreaks(m_line, m_delimiter);
    line = m_line;
    return true;
  }
  return false;
}

} // namespace imex
