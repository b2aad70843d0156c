#pragma once

#include "runtime/Integer.h"

#include <cstddef>
#include <cstdint>
#include <string_view>

namespace imex {

/// Tells of a line whether it certainly passes the check of simpleClientValidation(), in one look at its bytes and
/// without making its fields. It never says what is wrong: a line that does not pass here goes through the check
/// itself, which finds the reason, or that there is none.
class LineCheck {
 public:
  /// `delimiterAscii` and `expectedFields` are those of simpleClientValidation(). Positions in `required` count from 1
  /// to 63: bit n stands for field n, which must not be empty.
  LineCheck(Integer delimiterAscii, Integer expectedFields, std::uint64_t required);

  bool passes(std::string_view line) const;

 private:
  bool isOneMissing(std::uint64_t delimiters, std::uint64_t isFieldStart, std::size_t fieldsBefore) const;

  char m_delimiter;
  bool m_isUsable; ///< false where the delimiter is no ASCII character
  std::size_t m_fields;
  std::uint64_t m_required;
};

/// The fields that a line of this type and layout must fill, as LineCheck takes them.
std::uint64_t requiredFields(std::string_view dataType, std::string_view dataOrigin);

} // namespace imex
