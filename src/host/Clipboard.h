#pragma once

#include "runtime/export.h"

#include <string_view>

namespace imex::host {

/// The clipboard that the user's programs share.
class IMEX_EXPORT Clipboard {
 public:
  virtual ~Clipboard() = default;

  /// Empties it, whatever it holds.
  virtual void clear() = 0;

  /// Replaces what it holds by a text.
  virtual void setText(std::string_view text) = 0;
};

} // namespace imex::host
