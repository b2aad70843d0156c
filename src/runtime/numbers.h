#pragma once

#include "runtime/Integer.h"
#include "runtime/export.h"

#include <compare>
#include <cstdint>
#include <string_view>

namespace imex {

// One reader of numbers for the whole component. A number as text is, in this order:
//
//   - blanks, one sign (+ or -) and one currency sign, in any order, each of them optional;
//   - digits 0 to 9, with a thousands separator between any two of them;
//   - a decimal separator and digits; the digits before or behind it may be missing, but not both;
//   - an exponent: e or E, a sign of its own or none, digits;
//   - blanks, the sign and the currency sign where they did not stand in front.
//
// Nothing else is a number: no other sign of negation, no other base, no name of an infinity. Thousands separators
// need not make groups of three. Blanks are the space, the tab and the no-break spaces U+00A0 and U+202F.
//
// The separators come from the facet numpunct<wchar_t> of the global std::locale and the currency sign from its
// moneypunct<wchar_t>, because the narrow facets cannot hold a separator that takes several bytes in UTF-8. Where the
// locale has none, "," "." and "$" apply. A character that would be both separators is the decimal one. Where the
// thousands separator is one of the spaces, every space may stand for it: a keyboard has only the ordinary one.
//
// The form alone decides what is a number, not its size. Every conversion takes the exact decimal value and raises
// error 13 for a text that is not a number and error 6 for one that does not fit; rounding is half to even everywhere.

/// Whether `text` is a number. The empty text is not.
IMEX_EXPORT bool isNumeric(std::string_view text);

/// The nearest double, 0 for what is too small for one. Error 6 past the greatest double.
IMEX_EXPORT double toDouble(std::string_view text);

/// The number as a signed integer of 32 bits.
IMEX_EXPORT std::int32_t toLong(std::string_view text);

/// The number as a signed integer of 16 bits.
IMEX_EXPORT Integer toInteger(std::string_view text);

/// A fixed-point amount: 64 bits, four decimal places, so -922,337,203,685,477.5808 to 922,337,203,685,477.5807.
class Currency {
 public:
  /// Starts at 0.
  constexpr Currency() = default;

  /// The amount as a whole number of its smallest units: 12.5 is 125,000.
  static constexpr Currency ofTenThousandths(std::int64_t value) {
    Currency result;
    result.m_tenThousandths = value;
    return result;
  }
  constexpr std::int64_t tenThousandths() const { return m_tenThousandths; }

  /// By amount.
  friend constexpr auto operator<=>(Currency, Currency) = default;

 private:
  std::int64_t m_tenThousandths = 0;
};

/// The number as an amount, taken from its decimal digits and not by way of a double.
IMEX_EXPORT Currency toCurrency(std::string_view text);

} // namespace imex
