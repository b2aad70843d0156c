#pragma once

#include "host/Clipboard.h"
#include "runtime/export.h"

namespace imex::platform {

/// The desktop's clipboard.
class IMEX_EXPORT QtClipboard : public host::Clipboard {
 public:
  void clear() override;
  void setText(std::string_view text) override;
};

} // namespace imex::platform
