#include "records/ImportProjectLineItemBean.h"

namespace imex {

ImportProjectLineItemBean::ImportProjectLineItemBean() : LineItemRecord("ImportProjectLineItemBean") {}

} // namespace imex
