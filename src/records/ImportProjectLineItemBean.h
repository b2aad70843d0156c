#pragma once

#include "records/LineItemRecord.h"

namespace imex {

/// One line item of a project.
class ImportProjectLineItemBean : public LineItemRecord {
 public:
  ImportProjectLineItemBean();
};

} // namespace imex
