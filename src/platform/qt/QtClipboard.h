#pragma once

#include "host/Clipboard.h"

namespace imex::platform {

/// The desktop's clipboard.
class QtClipboard : public host::Clipboard {
 public:
  void clear() override;
  void setText(std::string_view text) override;
};

} // namespace imex::platform
