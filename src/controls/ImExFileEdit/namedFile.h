#pragma once

#include "runtime/RuntimeError.h"

#include <string>
#include <type_traits>
#include <utility>

namespace imex {

/// Runs `action` and puts the path behind the description of an error that it raises, so that the user learns which
/// file it is about.
template <class Action>
std::invoke_result_t<Action> namingFile(const std::string& path, Action&& action) {
  try {
    return std::forward<Action>(action)();
  } catch (...) {
    const RuntimeError error = currentError();
    throw RuntimeError(error.number(), error.source(), error.description() + ": " + path);
  }
}

} // namespace imex
