#pragma once

#include "runtime/export.h"

#include <string_view>

namespace imex::host {

/// Keys that can be asked for, with their virtual-key codes.
enum class VirtualKey { tab = 9, shift = 16 };

/// The keyboard, past the events of a control.
class IMEX_EXPORT Keyboard {
 public:
  virtual ~Keyboard() = default;

  /// Whether the key is held down at this moment.
  virtual bool isDown(VirtualKey key) const = 0;

  /// Types keys into what has the focus and returns when they are dealt with: names in braces, "{Right}", "{Left}",
  /// "{Down}" and "{Up}", one after the other, as if no key were held down beside them. Error 5 for another text.
  virtual void sendKeys(std::string_view keys) = 0;
};

} // namespace imex::host
