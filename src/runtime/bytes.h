#pragma once

#include <bit>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <string_view>

#ifdef __SSE2__
#include <emmintrin.h>
#endif

namespace imex {

// Questions about the bytes of a text that are asked of every byte of a file, answered for many bytes at a time.

/// Sixteen bytes in one. Comparisons give a byte of all bits set for each that is true.
using ByteVector = unsigned char __attribute__((vector_size(16)));

inline ByteVector bytesAt(const char* place) {
  ByteVector bytes;
  std::memcpy(&bytes, place, sizeof bytes);
  return bytes;
}

/// Whether a byte is a control character below the space or beyond ASCII: one comparison, because those beyond ASCII
/// are negative as signed bytes.
inline bool isControlOrNonAscii(unsigned char c) {
  return static_cast<signed char>(c) < 0x20;
}
inline auto isControlOrNonAscii(ByteVector bytes) {
  using SignedVector = signed char __attribute__((vector_size(16)));
  return reinterpret_cast<SignedVector>(bytes) < 0x20;
}

/// Which of the 16 bytes of a comparison's result are true: bit i stands for byte i.
template <class Vector>
std::uint32_t bitsOf(const Vector& result) {
  static_assert(sizeof result == sizeof(ByteVector));
#ifdef __SSE2__
  __m128i bytes;
  std::memcpy(&bytes, &result, sizeof bytes);
  return static_cast<std::uint32_t>(_mm_movemask_epi8(bytes));
#else
  std::uint32_t bits = 0;
  for (unsigned i = 0; i < sizeof result; ++i)
    bits |= std::uint32_t{result[i] != 0} << i;
  return bits;
#endif
}

/// The position of the first byte from `from` on for which `isWanted` is true, the size of the text where there is
/// none. `isWanted` takes an unsigned char or, in place of each, a ByteVector: it compares, and joins what that gives
/// with "|" and "&".
template <class Predicate>
std::size_t findByte(std::string_view text, Predicate isWanted, std::size_t from = 0) {
  constexpr std::size_t kVector = sizeof(ByteVector);
  const char* const bytes = text.data();
  const std::size_t size = text.size();
  const auto wanted = [&](std::size_t at) { return bitsOf(isWanted(bytesAt(bytes + at))); };
  std::size_t at = from;
  for (; at + 2 * kVector <= size; at += 2 * kVector) {
    if (const std::uint32_t found = wanted(at) | wanted(at + kVector) << kVector; found != 0)
      return at + static_cast<std::size_t>(std::countr_zero(found));
  }
  while (at < size && !isWanted(static_cast<unsigned char>(bytes[at])))
    ++at;
  return at;
}

/// The position of the first byte beyond ASCII from `from` on, the size of the text where there is none.
inline std::size_t findNonAscii(std::string_view text, std::size_t from = 0) {
  constexpr std::size_t kWords = 8;
  constexpr std::uint64_t kHighBits = 0x8080808080808080U;
  std::uint64_t words[kWords];
  std::size_t at = from;
  for (; at + sizeof words <= text.size(); at += sizeof words) {
    std::memcpy(words, text.data() + at, sizeof words);
    std::uint64_t any = 0;
    for (const std::uint64_t word : words)
      any |= word;
    if ((any & kHighBits) != 0)
      break;
  }
  return findByte(
      text, [](auto c) { return c > 0x7F; }, at);
}

inline constexpr std::size_t kMaskSize = 64;

/// Which of the 64 bytes at `bytes` are `wanted`: bit i stands for byte i.
inline std::uint64_t equalBytes(const char* bytes, char wanted) {
  std::uint64_t mask = 0;
  for (unsigned i = 0; i < kMaskSize / sizeof(ByteVector); ++i) {
    const std::size_t at = i * sizeof(ByteVector);
    mask |= std::uint64_t{bitsOf(bytesAt(bytes + at) == static_cast<unsigned char>(wanted))} << at;
  }
  return mask;
}

/// The same for the first `size` bytes at `bytes`, 63 at most; nothing behind them is read, and their bits are 0.
inline std::uint64_t equalBytes(const char* bytes, std::size_t size, char wanted) {
  char block[kMaskSize] = {};
  std::memcpy(block, bytes, size);
  return equalBytes(block, wanted) & ((std::uint64_t{1} << size) - 1);
}

} // namespace imex
