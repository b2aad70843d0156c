#include "records/LineItemRecord.h"

#include "module/properties.h"

namespace imex {

std::string LineItemRecord::Column2Price() const {
  if (m_readsOfColumn2Price == ReadsOfColumn2Price::untraced)
    return m_column2Price;
  return read("Column2Price", m_column2Price);
}

std::string LineItemRecord::read(std::string_view property, const std::string& value) const {
  return readTraced(m_className, property, value);
}

void LineItemRecord::write(std::string_view property, std::string& place, std::string value) {
  writeTraced(m_className, property, place, std::move(value));
}

} // namespace imex
