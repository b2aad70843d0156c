#pragma once

#include "runtime/RuntimeError.h"

#include <concepts>
#include <cstdint>
#include <limits>
#include <string>
#include <utility>

namespace imex {

/// The integer types that hold numbers: neither truth values nor characters.
template <class T>
concept WholeNumber =
    std::integral<T> && !std::same_as<T, bool> && !std::same_as<T, char> && !std::same_as<T, wchar_t> &&
    !std::same_as<T, char8_t> && !std::same_as<T, char16_t> && !std::same_as<T, char32_t>;

/// A signed integer of 16 bits. Every conversion into it and every sum is checked: a value outside -32768..32767
/// raises error 6, "Overflow", and leaves the object as it was. It starts at 0 and converts to int by itself.
class Integer {
 public:
  /// The range: -32768 to 32767.
  static constexpr int kMax = std::numeric_limits<std::int16_t>::max();
  static constexpr int kMin = std::numeric_limits<std::int16_t>::min();

  /// Starts at 0.
  constexpr Integer() = default;

  /// Error 6 for a value outside the range.
  template <WholeNumber T>
  constexpr Integer(T value) : m_value(narrow(value)) {}

  /// The value.
  constexpr operator int() const { return m_value; }

  /// Adds. Error 6 where the sum is outside the range; the object stays as it was.
  constexpr Integer& operator+=(Integer other) {
    m_value = narrow(int{m_value} + other.m_value);
    return *this;
  }

  /// Adds 1, as += does.
  constexpr Integer& operator++() { return *this += 1; }

  /// The sum. Error 6 where it is outside the range.
  friend constexpr Integer operator+(Integer a, Integer b) { return a += b; }
  /// The sum. Error 6 where it or the other number is outside the range.
  template <WholeNumber T>
  friend constexpr Integer operator+(Integer a, T b) {
    return a += Integer(b);
  }

  /// By value.
  friend constexpr bool operator==(Integer a, Integer b) = default;
  /// By value, with a number of any size.
  template <WholeNumber T>
  friend constexpr bool operator==(Integer a, T b) {
    return std::cmp_equal(a.m_value, b);
  }

 private:
  template <WholeNumber T>
  static constexpr std::int16_t narrow(T value) {
    if (std::cmp_less(value, kMin) || std::cmp_greater(value, kMax))
      throw RuntimeError(ErrorNumber::overflow);
    return static_cast<std::int16_t>(value);
  }

  std::int16_t m_value = 0;
};

/// The number in decimal.
inline std::string toText(Integer value) {
  return std::to_string(int{value});
}

} // namespace imex
