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

/// The position of the first byte from `from` on for which `isWanted` is true, the size of the text where there is
/// none. `isWanted` takes an unsigned char or, in place of each, a ByteVector: it compares, and joins what that gives
/// with "|" and "&".
template <class Predicate>
std::size_t findByte(std::string_view text, Predicate isWanted, std::size_t from = 0) {
  constexpr std::size_t kBlock = 2 * sizeof(ByteVector);
  const char* const bytes = text.data();
  const std::size_t size = text.size();
  std::size_t at = from;
  for (; at + kBlock <= size; at += kBlock) {
    const auto found = isWanted(bytesAt(bytes + at)) | isWanted(bytesAt(bytes + at + sizeof(ByteVector)));
    std::uint64_t halves[2];
    std::memcpy(halves, &found, sizeof halves);
    if ((halves[0] | halves[1]) != 0)
      break;
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
#ifdef __SSE2__
  const __m128i pattern = _mm_set1_epi8(wanted);
  for (unsigned i = 0; i < kMaskSize / 16; ++i) {
    __m128i block;
    std::memcpy(&block, bytes + std::size_t{i} * 16, sizeof block);
    const auto equal = static_cast<unsigned>(_mm_movemask_epi8(_mm_cmpeq_epi8(block, pattern)));
    mask |= std::uint64_t{equal} << (i * 16);
  }
#else
  for (unsigned i = 0; i < kMaskSize; ++i)
    mask |= std::uint64_t{bytes[i] == wanted} << i;
#endif
  return mask;
}

/// The same for the first `size` bytes at `bytes`, 63 at most; nothing behind them is read, and their bits are 0.
inline std::uint64_t equalBytes(const char* bytes, std::size_t size, char wanted) {
  char block[kMaskSize] = {};
  std::memcpy(block, bytes, size);
  return equalBytes(block, wanted) & ((std::uint64_t{1} << size) - 1);
}

} // namespace imex
