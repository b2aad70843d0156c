#pragma once

#include "runtime/RuntimeError.h"

#include <cstdint>
#include <optional>
#include <utility>

namespace imex::test {

/// The error that `action` raises, or nothing. Exceptions of another type pass through and fail the test.
template <class Action>
std::optional<RuntimeError> raised(Action&& action) {
  try {
    std::forward<Action>(action)();
  } catch (const RuntimeError& error) {
    return error;
  }
  return std::nullopt;
}

/// The number of the error that `action` raises; 0 where it raises none.
template <class Action>
std::int32_t raisedNumber(Action&& action) {
  const std::optional<RuntimeError> error = raised(std::forward<Action>(action));
  return error ? error->number() : 0;
}

} // namespace imex::test
