#pragma once

#include "records/LineItemRecord.h"

namespace imex {

/// One line item of an order.
class ImportOrderLineItemBean : public LineItemRecord {
 public:
  ImportOrderLineItemBean();
};

} // namespace imex
