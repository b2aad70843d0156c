#include "request/shared.h"

#include "host/MessageBox.h"
#include "host/Services.h"

#include <memory>
#include <utility>

namespace imex {

void showNotice(std::string_view prompt, std::string_view title) {
  host::required(host::services().messageBox).show(prompt, host::kExclamationStyle, title);
}

void addErrorRow(Collection<std::shared_ptr<ImportExportErrorBean>>& rows, Integer number, std::string text) {
  const auto bean = std::make_shared<ImportExportErrorBean>();
  bean->RowNumber(number);
  bean->RowError(std::move(text));
  rows.add(bean);
}

} // namespace imex
