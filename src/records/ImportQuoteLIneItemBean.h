#pragma once

#include "records/LineItemRecord.h"
#include "runtime/export.h"

namespace imex {

/// One line item of a quote. The odd capital is part of the name that the host knows.
class IMEX_EXPORT ImportQuoteLIneItemBean : public LineItemRecord {
 public:
  ImportQuoteLIneItemBean();
};

} // namespace imex
