#pragma once

#include "runtime/export.h"

#include <string_view>

namespace imex::host {

// A style is the code of the buttons plus the code of the icon.
inline constexpr int kQuestionStyle = 36;    ///< Yes and No, question icon
inline constexpr int kExclamationStyle = 48; ///< OK, exclamation icon
inline constexpr int kInformationStyle = 64; ///< OK, information icon

enum class Answer { ok = 1, yes = 6, no = 7 };

/// Shows a text to the user and waits for the answer.
class IMEX_EXPORT MessageBox {
 public:
  virtual ~MessageBox() = default;

  /// Returns the button that was pressed: `ok` for a box with that button alone.
  virtual Answer show(std::string_view prompt, int style, std::string_view title) = 0;
};

} // namespace imex::host
