#include "controls/ImExFileEdit/RecordRows.h"

#include "controls/ImExFileEdit/FieldReader.h"

#include <algorithm>
#include <cstddef>
#include <span>
#include <string>

namespace imex {

RecordRows::Fit RecordRows::show(std::string_view record) {
  const std::string number = std::to_string(++m_row);
  const auto columns = static_cast<std::size_t>(m_grid.size().columns);
  m_texts.assign(1, number);
  FieldReader fields(record, m_delimiter);
  std::string_view field;
  while (m_texts.size() <= columns && fields.next(field)) // one too many tells that there are more
    m_texts.push_back(field);
  m_grid.setTexts({m_row, 0}, std::span(m_texts).first(std::min(m_texts.size(), columns)));
  if (m_texts.size() > columns)
    return Fit::cut;
  return m_texts.size() > 1 ? Fit::whole : Fit::nothing;
}

} // namespace imex
