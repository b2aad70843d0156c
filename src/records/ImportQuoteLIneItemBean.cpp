#include "records/ImportQuoteLIneItemBean.h"

namespace imex {

// In this record alone the trace readers expect nothing of reads of Column2Price.
ImportQuoteLIneItemBean::ImportQuoteLIneItemBean()
    : LineItemRecord("ImportQuoteLIneItemBean", ReadsOfColumn2Price::untraced) {}

} // namespace imex
