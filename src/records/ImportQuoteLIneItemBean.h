#pragma once

#include "records/LineItemRecord.h"

namespace imex {

/// One line item of a quote. The odd capital is part of the name that the host knows.
class ImportQuoteLIneItemBean : public LineItemRecord {
 public:
  ImportQuoteLIneItemBean();
};

} // namespace imex
