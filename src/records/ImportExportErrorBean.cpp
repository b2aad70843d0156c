#include "records/ImportExportErrorBean.h"

#include "module/properties.h"

#include <string_view>
#include <utility>

namespace imex {

namespace {

constexpr std::string_view kSource = "ImportExportErrorBean";

} // namespace

void ImportExportErrorBean::RowNumber(const Integer& value) {
  writeTraced(kSource, "RowNumber", m_rowNumber, value);
}

Integer ImportExportErrorBean::RowNumber() const {
  return readTraced(kSource, "RowNumber", m_rowNumber);
}

void ImportExportErrorBean::RowError(std::string value) {
  writeTraced(kSource, "RowError", m_rowError, std::move(value));
}

std::string ImportExportErrorBean::RowError() const {
  return readTraced(kSource, "RowError", m_rowError);
}

} // namespace imex
