#pragma once

#include "host/MessageBox.h"
#include "runtime/export.h"

namespace imex::platform {

/// Message boxes over the active window. A text is shown as it is, never as markup. Escape answers No to a question.
class IMEX_EXPORT QtMessageBox : public host::MessageBox {
 public:
  host::Answer show(std::string_view prompt, int style, std::string_view title) override;
};

} // namespace imex::platform
