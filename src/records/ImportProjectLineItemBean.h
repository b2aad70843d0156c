#pragma once

#include "records/LineItemRecord.h"
#include "runtime/export.h"

namespace imex {

/// One line item of a project.
class IMEX_EXPORT ImportProjectLineItemBean : public LineItemRecord {
 public:
  ImportProjectLineItemBean();
};

} // namespace imex
