#pragma once

#include "runtime/RuntimeError.h"

#include <algorithm>
#include <cstdint>
#include <cstdlib>
#include <initializer_list>
#include <iostream>
#include <optional>
#include <string_view>
#include <utility>

namespace imex::fuzz {

/// The bytes of a run as text.
inline std::string_view text(const std::uint8_t* data, std::size_t size) {
  return {reinterpret_cast<const char*>(data), size};
}

/// Ends the program, so that the fuzzer keeps the input, where something that must hold does not.
inline void require(bool holds, std::string_view what) {
  if (holds)
    return;
  std::cerr << "does not hold: " << what << std::endl;
  std::abort();
}

/// Runs `action` and returns what it gives, nothing where it raised an error of one of these numbers. Any other error
/// ends the program.
template <class Action>
auto unless(std::initializer_list<std::int32_t> numbers, Action&& action)
    -> std::optional<decltype(std::forward<Action>(action)())> {
  try {
    return std::forward<Action>(action)();
  } catch (const RuntimeError& error) {
    if (std::find(numbers.begin(), numbers.end(), error.number()) == numbers.end())
      std::cerr << "error " << error.number() << ": " << error.description() << '\n';
    require(std::find(numbers.begin(), numbers.end(), error.number()) != numbers.end(), "the error is one of these");
    return std::nullopt;
  }
}

} // namespace imex::fuzz

/// What a target defines: one run over one input.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size);
