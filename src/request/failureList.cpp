#include "request/failureList.h"

#include <cstddef>

namespace imex {

namespace {

constexpr std::size_t kFullLength = 50;

} // namespace

bool FailureList::add(Integer lineNumber) {
  if (m_isFull)
    return false;
  if (m_text.empty()) {
    m_text = toText(lineNumber);
  } else if (m_text.size() < kFullLength) {
    m_text += "," + toText(lineNumber);
  } else {
    m_text += " and others.";
    m_isFull = true;
  }
  return !m_isFull;
}

} // namespace imex
