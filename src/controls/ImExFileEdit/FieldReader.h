#pragma once

#include <optional>
#include <string_view>

namespace imex {

/// Takes the fields of a record one after the other. Every delimiter separates; nothing is quoted or trimmed. So a
/// record of n delimiters has n + 1 fields, one that ends in the delimiter has an empty last field, and an empty record
/// has one empty field.
class FieldReader {
 public:
  /// Both texts outlive the reader. The delimiter has at least one byte.
  FieldReader(std::string_view record, std::string_view delimiter) : m_rest(record), m_delimiter(delimiter) {}

  /// Sets `field` to the next one and returns true; returns false where there are no more.
  bool next(std::string_view& field) {
    if (!m_rest)
      return false;
    const std::size_t end = m_delimiter.size() == 1 ? m_rest->find(m_delimiter.front()) : m_rest->find(m_delimiter);
    field = m_rest->substr(0, end);
    if (end == std::string_view::npos)
      m_rest.reset();
    else
      m_rest->remove_prefix(end + m_delimiter.size());
    return true;
  }

 private:
  std::optional<std::string_view> m_rest; ///< nothing after the last field
  std::string_view m_delimiter;
};

} // namespace imex
