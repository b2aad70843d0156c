#include "request/failureList.h"

#include <cstddef>

namespace imex {

namespace {

constexpr std::size_t kFullLength = 50;

} // namespace

void FailureList::add(Integer lineNumber) {
  if (m_isFull)
    return;
  if (m_text.empty()) {
    m_text = toText(lineNumber);
  } else if (m_text.size() < kFullLength) {
    m_text += "," + toText(lineNumber);
  } else {
    m_text += " and others.";
    m_isFull = true;
  }
}

} // namespace imex
