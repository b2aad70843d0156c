#pragma once

#include "support/raised.h"

#include <string>
#include <utility>

namespace imex::test {

/// The error that `action` raises, as "NUMBER SOURCE: DESCRIPTION"; empty where it raises none.
template <class Action>
std::string failure(Action&& action) {
  const std::optional<RuntimeError> error = raised(std::forward<Action>(action));
  return error ? std::to_string(error->number()) + ' ' + error->source() + ": " + error->description() : std::string();
}

} // namespace imex::test
