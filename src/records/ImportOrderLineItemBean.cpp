#include "records/ImportOrderLineItemBean.h"

namespace imex {

ImportOrderLineItemBean::ImportOrderLineItemBean() : LineItemRecord("ImportOrderLineItemBean") {}

} // namespace imex
