#pragma once

#include <concepts>
#include <cstdint>

namespace imex {

/// A truth value of 16 bits, all bits set for True, that converts to and from bool. It starts False.
class Boolean {
 public:
  constexpr Boolean() = default;
  /// The same truth value, from and to bool and from nothing else: a number is no truth value.
  constexpr Boolean(std::same_as<bool> auto value) : m_bits(value ? std::int16_t{-1} : std::int16_t{0}) {}
  constexpr operator bool() const { return m_bits != 0; }

  /// -1 for True, 0 for False.
  constexpr std::int16_t bits() const { return m_bits; }

 private:
  std::int16_t m_bits = 0;
};

} // namespace imex
