#pragma once

#include "runtime/RuntimeError.h"

#include <vector>

namespace imex::test {

// A test program with windows has QtTestMain.cpp as its main: an application whose notify() catches the errors that
// leave an event, as a host's does, and a listener that fails a test for every Qt warning during it and for every such
// error that it did not take.

/// The errors that left an event since the last call, in order.
std::vector<RuntimeError> takeEscapedErrors();

/// Their numbers.
inline std::vector<int> takeEscapedNumbers() {
  std::vector<int> numbers;
  for (const RuntimeError& error : takeEscapedErrors())
    numbers.push_back(error.number());
  return numbers;
}

} // namespace imex::test
