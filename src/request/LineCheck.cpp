#include "request/LineCheck.h"

#include "runtime/bytes.h"

#include <algorithm>
#include <bit>

namespace imex {

namespace {

constexpr std::size_t kLongestLine = Integer::kMax; // in bytes: a line of so many has no more characters
constexpr int kLastAscii = 0x7F;

/// The number of bits that are set, without an instruction that not every processor has.
std::size_t countBits(std::uint64_t bits) {
  bits -= (bits >> 1U) & 0x5555555555555555U;
  bits = (bits & 0x3333333333333333U) + ((bits >> 2U) & 0x3333333333333333U);
  return (((bits + (bits >> 4U)) & 0x0F0F0F0F0F0F0F0FU) * 0x0101010101010101U) >> 56U;
}

/// Which of the 64 bytes from `at` on, or of those that are left, are delimiters. The end of a longer line is taken
/// together with bytes before it.
std::uint64_t delimitersAt(std::string_view line, std::size_t at, char delimiter) {
  const std::size_t left = line.size() - at;
  if (left >= kMaskSize)
    return equalBytes(line.data() + at, delimiter);
  if (at == 0)
    return equalBytes(line.data(), left, delimiter);
  return equalBytes(line.data() + line.size() - kMaskSize, delimiter) >> (kMaskSize - left);
}

} // namespace

LineCheck::LineCheck(Integer delimiterAscii, Integer expectedFields, std::uint64_t required)
    : m_delimiter(static_cast<char>(int{delimiterAscii})),
      m_isUsable(delimiterAscii >= 0 && delimiterAscii <= kLastAscii && expectedFields > 0),
      m_fields(static_cast<std::size_t>(int{expectedFields})), m_required(required) {}

/// Whether one of the fields that end in this part of the line is required and empty: its delimiter follows another one
/// directly, or starts the line.
bool LineCheck::isOneMissing(std::uint64_t delimiters, std::uint64_t isFieldStart, std::size_t fieldsBefore) const {
  for (std::uint64_t ends = delimiters & ((delimiters << 1U) | isFieldStart); ends != 0; ends &= ends - 1) {
    const auto below = (std::uint64_t{1} << static_cast<unsigned>(std::countr_zero(ends))) - 1;
    const std::size_t field = fieldsBefore + countBits(delimiters & below) + 1;
    if (field < kMaskSize && ((m_required >> field) & 1U) != 0)
      return true;
  }
  return false;
}

bool LineCheck::passes(std::string_view line) const {
  if (!m_isUsable || line.empty() || line.size() > kLongestLine)
    return false;
  std::size_t delimiters = 0;
  std::uint64_t isFieldStart = 1;
  const auto isRequiredFieldLeft = [&](std::size_t fields) {
    return fields + 1 < kMaskSize && m_required >> (fields + 1) != 0;
  };
  for (std::size_t at = 0; at < line.size(); at += kMaskSize) {
    const std::size_t size = std::min(line.size() - at, kMaskSize);
    const std::uint64_t found = delimitersAt(line, at, m_delimiter);
    if (isRequiredFieldLeft(delimiters) && isOneMissing(found, isFieldStart, delimiters))
      return false;
    delimiters += countBits(found);
    isFieldStart = (found >> (size - 1)) & 1U;
  }
  // The last field counts where there is something in it, and no required one lies behind it.
  return delimiters + 1 == m_fields && !isRequiredFieldLeft(delimiters + (isFieldStart != 0 ? 0 : 1));
}

} // namespace imex
