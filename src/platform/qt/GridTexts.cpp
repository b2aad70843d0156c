#include "platform/qt/GridTexts.h"

#include "runtime/RuntimeError.h"

#include <algorithm>
#include <cstring>
#include <limits>

namespace imex::platform {

namespace {

constexpr std::size_t kFirstBlock = std::size_t{4} * 1024;
constexpr std::size_t kLargestBlock = std::size_t{256} * 1024;
constexpr std::size_t kSlack = 2 * kLargestBlock; // what is not worth taking back

void requireRowSize(std::size_t size) {
  if (size > std::numeric_limits<std::uint32_t>::max())
    throw RuntimeError(ErrorNumber::outOfMemory, "GridTexts");
}

void copy(char* to, const char* from, std::size_t size) {
  if (size > 0) // neither may be null otherwise
    std::memcpy(to, from, size);
}

} // namespace

// --- Arena ----------------------------------------------------------------------------------------------------------

void GridTexts::Arena::reserve(std::size_t size) {
  if (room() >= size)
    return;
  const std::size_t usual = std::clamp(m_byteCount, kFirstBlock, kLargestBlock);
  const std::size_t blockSize = std::max(size, usual);
  m_blocks.push_back(std::make_unique_for_overwrite<char[]>(blockSize));
  m_free = m_blocks.back().get();
  m_end = m_free + blockSize;
  m_byteCount += blockSize;
}

// --- Texts ----------------------------------------------------------------------------------------------------------

GridTexts::GridTexts(int rows, int columns) : m_columns(columns) {
  setRows(rows);
}

void GridTexts::setText(int row, int column, std::string_view text) {
  setTexts(row, column, {&text, 1});
}

void GridTexts::setTexts(int row, int column, std::span<const std::string_view> texts) {
  Row& line = m_rows[static_cast<std::size_t>(row)];
  auto cell = static_cast<std::uint32_t>(column);
  for (; !texts.empty() && cell < line.filled; ++cell, texts = texts.subspan(1))
    replace(line, cell, texts.front());
  while (!texts.empty() && texts.back().empty()) // cells behind the last text have none
    texts = texts.first(texts.size() - 1);
  if (!texts.empty())
    append(line, cell, texts);
}

/// Adds texts behind those of the row.
void GridTexts::append(Row& line, std::uint32_t cell, std::span<const std::string_view> texts) {
  const std::uint32_t size = sizeOf(line);
  std::size_t newSize = size;
  for (const std::string_view text : texts)
    newSize += text.size();
  if (line.text + size != m_arena.free() || m_arena.room() < newSize - size)
    moveToEnd(line, size, newSize);
  std::uint32_t* ends = endsOf(line);
  std::fill(ends + line.filled, ends + cell, size); // the cells that were passed over are empty
  std::uint32_t end = size;
  for (const std::string_view text : texts) {
    copy(line.text + end, text.data(), text.size());
    end += static_cast<std::uint32_t>(text.size());
    ends[cell++] = end;
  }
  m_arena.take(newSize - size);
  m_textSize += newSize - size;
  line.filled = cell;
  compactIfWorth();
}

/// Moves a row to where it can grow to `newSize`.
void GridTexts::moveToEnd(Row& line, std::uint32_t size, std::size_t newSize) {
  requireRowSize(newSize);
  m_arena.reserve(newSize);
  copy(m_arena.free(), line.text, size);
  line.text = m_arena.free();
  m_arena.take(size);
}

/// Writes the row anew and leaves the old one as it is, since `text` may be a part of it.
void GridTexts::replace(Row& line, std::uint32_t cell, std::string_view text) {
  std::uint32_t* ends = endsOf(line);
  const std::uint32_t size = sizeOf(line);
  const std::uint32_t start = cell == 0 ? 0 : ends[cell - 1];
  const std::uint32_t end = ends[cell];
  const std::size_t newSize = size - (end - start) + text.size();
  requireRowSize(newSize);
  m_arena.reserve(newSize);
  char* to = m_arena.free();
  copy(to, line.text, start);
  copy(to + start, text.data(), text.size());
  copy(to + start + text.size(), line.text + end, size - end);
  m_arena.take(newSize);
  line.text = to;
  m_textSize += newSize - size; // wraps for a shorter text, as the ends do
  for (std::uint32_t i = cell; i < line.filled; ++i)
    ends[i] += static_cast<std::uint32_t>(newSize - size);
  compactIfWorth();
}

void GridTexts::compactIfWorth() {
  if (m_arena.byteCount() > 2 * m_textSize + kSlack)
    compact();
}

void GridTexts::compact() {
  Arena arena;
  arena.reserve(m_textSize); // all that can fail
  for (Row& line : m_rows) {
    const std::uint32_t size = sizeOf(line);
    copy(arena.free(), line.text, size);
    line.text = arena.free();
    arena.take(size);
  }
  m_arena = std::move(arena);
}

void GridTexts::clear() {
  for (Row& line : m_rows) {
    line.text = nullptr;
    line.filled = 0;
  }
  m_arena = Arena();
  m_textSize = 0;
}

// --- Size -----------------------------------------------------------------------------------------------------------

void GridTexts::setSize(int rows, int columns) {
  if (rows < this->rows())
    setRows(rows);
  if (columns != m_columns)
    setColumns(columns);
  if (rows > this->rows())
    setRows(rows);
  compactIfWorth();
}

void GridTexts::setRows(int rows) {
  const auto count = static_cast<std::size_t>(rows);
  const std::size_t before = m_rows.size();
  const auto columns = static_cast<std::size_t>(m_columns);
  for (std::size_t i = count; i < before; ++i)
    release(m_rows[i]);
  if (count <= before) {
    m_rows.resize(count);
    return;
  }
  const std::size_t slots = m_ends.size() / columns;
  const std::size_t added = count - before;
  const std::size_t reused = std::min(added, m_freeSlots.size());
  m_rows.reserve(count);
  if (const std::size_t needed = (slots + added - reused) * columns; needed > m_ends.capacity())
    m_ends.reserve(needed + needed / 16);
  m_ends.resize((slots + added - reused) * columns);
  for (std::size_t i = 0; i < added; ++i) {
    Row line;
    if (i < reused) {
      line.slot = m_freeSlots.back();
      m_freeSlots.pop_back();
    } else {
      line.slot = static_cast<std::uint32_t>(slots + i - reused);
    }
    m_rows.push_back(line);
  }
}

void GridTexts::setColumns(int columns) {
  std::vector<std::uint32_t> ends(m_rows.size() * static_cast<std::size_t>(columns));
  std::uint32_t slot = 0;
  std::uint32_t* to = ends.data();
  for (Row& line : m_rows) {
    const std::uint32_t size = sizeOf(line);
    const std::uint32_t kept = std::min(line.filled, static_cast<std::uint32_t>(columns));
    std::copy_n(endsOf(line), kept, to);
    m_textSize -= size - (kept == 0 ? 0 : to[kept - 1]);
    line.filled = kept;
    line.slot = slot++; // its old ends are not looked at again
    to += columns;
  }
  m_ends = std::move(ends);
  m_freeSlots.clear();
  m_columns = columns;
}

void GridTexts::release(const Row& line) {
  m_freeSlots.push_back(line.slot);
  m_textSize -= sizeOf(line);
}

void GridTexts::removeRow(int row) {
  const auto position = m_rows.begin() + row;
  release(*position);
  m_rows.erase(position);
  compactIfWorth();
}

std::size_t GridTexts::byteCount() const {
  return m_arena.byteCount() + m_ends.capacity() * sizeof(std::uint32_t) + m_rows.capacity() * sizeof(Row) +
         m_freeSlots.capacity() * sizeof(std::uint32_t);
}

} // namespace imex::platform
