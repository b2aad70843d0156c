#pragma once

#include "host/Grid.h"

#include <cstddef>
#include <cstdint>
#include <memory>
#include <span>
#include <string_view>
#include <vector>

namespace imex::platform {

/// The texts of a grid, in little memory: the bytes of a row lie behind each other, and a cell costs 4 bytes beside its
/// text, a row 16. Made for a grid that is filled row by row and from left to right, where a text is only appended; any
/// other change writes its row anew. What such changes leave behind is taken back when it is more than the texts
/// themselves, so that the bytes stay below twice the texts and half a MiB.
///
/// Rows and columns count from 0. What the caller gives is inside the size: nothing is checked here.
class GridTexts {
 public:
  GridTexts(int rows, int columns);
  GridTexts(const GridTexts&) = delete;
  GridTexts& operator=(const GridTexts&) = delete;

  int rows() const { return static_cast<int>(m_rows.size()); }
  int columns() const { return m_columns; }

  /// Adds empty rows at the bottom and empty columns at the right, or removes them with their texts. At least one row
  /// and one column.
  void setSize(int rows, int columns);

  /// Empties every cell. The size stays.
  void clear();

  /// Valid until the next change.
  std::string_view text(int row, int column) const { return texts(row)[column]; }

  /// The same for a whole row: the bytes of its texts, and where each of them ends. Cells behind the last end are
  /// empty.
  host::RowTexts texts(int row) const {
    const Row& line = m_rows[static_cast<std::size_t>(row)];
    const std::span<const std::uint32_t> ends(endsOf(line), line.filled);
    return {{line.text, ends.empty() ? 0 : ends.back()}, ends};
  }

  /// `text` may be one of the grid's own. Error 7 where the row would have more than 4 GiB; the texts then stay as they
  /// were.
  void setText(int row, int column, std::string_view text);

  /// Sets the texts from `column` on. A single text may be one of the grid's own; otherwise none is. Error 7 as above:
  /// texts behind the one that is too much then stay as they were.
  void setTexts(int row, int column, std::span<const std::string_view> texts);

  /// Removes a row; those below move up.
  void removeRow(int row);

  /// The memory that the texts take, in bytes.
  std::size_t byteCount() const;

 private:
  struct Row {
    char* text = nullptr;     ///< null while the row has no text
    std::uint32_t slot = 0;   ///< where its ends are
    std::uint32_t filled = 0; ///< cells from here on are empty, and their ends have no meaning
  };

  /// Blocks of bytes that are taken from one end and never move.
  class Arena {
   public:
    /// Room for `size` bytes at free(). What the last block had left is lost.
    void reserve(std::size_t size);

    char* free() const { return m_free; }
    std::size_t room() const { return static_cast<std::size_t>(m_end - m_free); }
    void take(std::size_t size) { m_free += size; }
    std::size_t byteCount() const { return m_byteCount; }

   private:
    std::vector<std::unique_ptr<char[]>> m_blocks;
    char* m_free = nullptr;
    char* m_end = nullptr;
    std::size_t m_byteCount = 0;
  };

  const std::uint32_t* endsOf(const Row& line) const {
    return m_ends.data() + std::size_t{line.slot} * static_cast<std::size_t>(m_columns);
  }
  std::uint32_t* endsOf(const Row& line) {
    return m_ends.data() + std::size_t{line.slot} * static_cast<std::size_t>(m_columns);
  }
  std::uint32_t sizeOf(const Row& line) const { return line.filled == 0 ? 0 : endsOf(line)[line.filled - 1]; }

  void append(Row& line, std::uint32_t cell, std::span<const std::string_view> texts);
  void replace(Row& line, std::uint32_t cell, std::string_view text);
  void moveToEnd(Row& line, std::uint32_t size, std::size_t newSize);
  void setRows(int rows);
  void setColumns(int columns);
  void release(const Row& line);
  void compact();
  void compactIfWorth();

  std::vector<Row> m_rows;
  std::vector<std::uint32_t> m_ends; ///< where each cell's text ends in its row, by slots of one row
  std::vector<std::uint32_t> m_freeSlots;
  Arena m_arena;
  std::size_t m_textSize = 0; ///< of all texts
  int m_columns;
};

} // namespace imex::platform
