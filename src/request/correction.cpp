#include "request/correction.h"

#include "runtime/text.h"

#include <cstddef>

namespace imex {

namespace {

constexpr std::size_t kTooManyToList = 10;

} // namespace

std::string correctionQuestion(const Strings& errors) {
  std::string question;
  if (errors.count() < kTooManyToList) {
    for (const std::string& error : errors)
      question += error + std::string(kLineBreak);
  }
  return question + std::string(kLineBreak) + " Would you like to correct the file?";
}

} // namespace imex
