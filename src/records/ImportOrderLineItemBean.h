#pragma once

#include "records/LineItemRecord.h"
#include "runtime/export.h"

namespace imex {

/// One line item of an order.
class IMEX_EXPORT ImportOrderLineItemBean : public LineItemRecord {
 public:
  ImportOrderLineItemBean();
};

} // namespace imex
