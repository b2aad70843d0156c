#pragma once

#include "host/Services.h"
#include "runtime/Integer.h"
#include "runtime/RuntimeError.h"
#include "runtime/export.h"

#include <concepts>
#include <optional>
#include <string>
#include <string_view>
#include <type_traits>
#include <utility>

namespace imex {

// The convention that every procedure follows: it tells the host's trace log when it is entered and left, catches
// every error raised inside it, records the error there, and ends in one of a few ways. A procedure is one call:
//
//   void ImExRequest::Directory(std::string value) {
//     traced({kSource, "Directory"}, [&] { m_directory = std::move(value); }, Ignore{});
//   }
//
// The endings are Reraise, ShowBox and Ignore below, or a callable that takes the CaughtError and gives the
// procedure's result. A procedure that fails writes an error record and no exit line.

/// The labels of a procedure in the trace log. Trace lines carry the name followed by "()", error records the name
/// alone and the same source, unless a label of its own is given: trace readers expect some irregular ones. The
/// labels of an error are read when it is recorded.
struct Procedure {
  std::string_view source;           ///< what the procedure belongs to: the name of a class or a module
  std::string_view name;             ///< without the "()"
  std::string_view errorName = {};   ///< empty: the name
  std::string_view errorSource = {}; ///< empty: the source
};

/// An error as a procedure's ending sees it, after it was recorded. The number has 16 bits.
struct CaughtError {
  /// What the error is: its number, what raised it, and its description.
  Integer number;
  std::string source;
  std::string description;

  /// "Error Number: 53 - File not found", the title of the box that tells the user.
  std::string title() const { return "Error Number: " + toText(number) + " - " + description; }

  /// The error as it was, to be thrown anew.
  RuntimeError asRuntimeError() const { return {number, source, description}; }
};

/// Ending: the same error goes to the caller.
struct Reraise {};

/// Ending: the error is recorded and nothing else happens; the result is an empty one.
struct Ignore {};

/// Thrown by a body to leave its procedure in the middle although nothing failed: nothing is recorded, no exit line is
/// written, and the result is an empty one. Where the convention wants the exit line of such a procedure, its body
/// returns instead.
struct IMEX_EXPORT LeaveEarly {};

/// The prompt of a failure that has no text of its own.
inline constexpr std::string_view kDefaultFailurePrompt = "The requested operation could not be completed.";

/// Ending: the user sees a box with the error in its title; the result is an empty one.
struct IMEX_EXPORT ShowBox {
  std::string prompt = {}; ///< empty: kDefaultFailurePrompt

  /// Shows the box: the prompt, an exclamation mark, and the error as title.
  void operator()(const CaughtError& error) const;
};

/// Whether a trace log is there that takes the entry and exit lines of procedures.
IMEX_EXPORT bool isTracing();

namespace detail {

IMEX_EXPORT void trace(const Procedure& procedure, std::string_view text, std::string_view message);

/// Takes the error in flight and records it. A number past 16 bits raises error 6 instead, which reaches the
/// procedure's caller: the number variable of the convention is that narrow on purpose.
IMEX_EXPORT CaughtError record(const Procedure& procedure);

template <class Result, class Ending>
Result finish(const Procedure& procedure, Ending&& ending) {
  CaughtError error = record(procedure);
  using E = std::remove_cvref_t<Ending>;
  if constexpr (std::same_as<E, Reraise>) {
    throw error.asRuntimeError();
  } else if constexpr (std::same_as<E, Ignore>) {
    return Result();
  } else if constexpr (std::is_void_v<std::invoke_result_t<Ending, const CaughtError&>>) {
    std::forward<Ending>(ending)(error);
    return Result();
  } else {
    return std::forward<Ending>(ending)(error);
  }
}

} // namespace detail

/// Runs a procedure that catches its errors but writes no trace lines.
template <class Body, class Ending>
std::invoke_result_t<Body> guarded(const Procedure& procedure, Body&& body, Ending&& ending) {
  try {
    return std::forward<Body>(body)();
  } catch (const LeaveEarly&) {
    return std::invoke_result_t<Body>();
  } catch (...) {
    return detail::finish<std::invoke_result_t<Body>>(procedure, std::forward<Ending>(ending));
  }
}

/// Runs a procedure's body between its two trace lines and lets its errors out. The lines carry the text that
/// `makeText` gives; where nobody takes them it is not made.
template <class MakeText, class Body>
std::invoke_result_t<Body> betweenTraces(const Procedure& procedure, MakeText&& makeText, Body&& body) {
  if (!isTracing())
    return std::forward<Body>(body)();
  const std::string text(makeText());
  detail::trace(procedure, text, "Entering Method...");
  if constexpr (std::is_void_v<std::invoke_result_t<Body>>) {
    std::forward<Body>(body)();
    detail::trace(procedure, text, "Exiting Method...");
  } else {
    auto result = std::forward<Body>(body)();
    detail::trace(procedure, text, "Exiting Method...");
    return result;
  }
}

/// Runs a procedure between its two trace lines.
template <class Body, class Ending>
std::invoke_result_t<Body> traced(const Procedure& procedure, Body&& body, Ending&& ending) {
  return guarded(
      procedure,
      [&] {
        const auto text = [&] { return std::string(procedure.name) + "()"; };
        return betweenTraces(procedure, text, std::forward<Body>(body));
      },
      std::forward<Ending>(ending));
}

} // namespace imex
