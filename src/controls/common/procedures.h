#pragma once

#include "controls/common/text.h"
#include "module/tracing.h"
#include "runtime/export.h"

#include <QObject>

#include <string>
#include <string_view>
#include <type_traits>
#include <utility>

namespace imex {

/// The source of a control's error records. Trace readers look for the errors of every control under this name.
inline constexpr std::string_view kControlErrorSource = "ImExActionCtrl";

/// The labels of a control's procedure in the trace log, as in Procedure. The source of the trace lines is missing: it
/// is the name that the control has at run time, its object name. An error record without a source has that name too.
struct Labels {
  std::string_view name;             ///< without the "()"
  std::string_view errorName = {};   ///< empty: the name
  std::string_view errorSource = {}; ///< empty: the control's object name
};

/// traced() for a procedure of `control`.
template <class Body, class Ending>
std::invoke_result_t<Body> tracedIn(const QObject& control, const Labels& labels, Body&& body, Ending&& ending) {
  const std::string source = toCore(control.objectName());
  return traced({source, labels.name, labels.errorName, labels.errorSource}, std::forward<Body>(body),
                std::forward<Ending>(ending));
}

/// guarded() for a procedure of `control`.
template <class Body, class Ending>
std::invoke_result_t<Body> guardedIn(const QObject& control, const Labels& labels, Body&& body, Ending&& ending) {
  const std::string source = toCore(control.objectName());
  return guarded({source, labels.name, labels.errorName, labels.errorSource}, std::forward<Body>(body),
                 std::forward<Ending>(ending));
}

namespace detail {

/// Takes the error in flight and records it as one after which `procedure` goes on. A number past 16 bits raises error
/// 6 instead, as in every procedure.
IMEX_EXPORT void recordResumed(const QObject& control, std::string_view procedure);

} // namespace detail

/// Runs one statement of a procedure that goes on with the next one whatever happens. `procedure` is the label of the
/// error record, with its "()".
template <class Statement>
void resumeNext(const QObject& control, std::string_view procedure, Statement&& statement) {
  try {
    std::forward<Statement>(statement)();
  } catch (...) {
    detail::recordResumed(control, procedure);
  }
}

/// Runs the statements of a control's resize between its two trace lines, and goes on after an error of each of them,
/// that of a trace line too.
template <class... Statements>
void tracedResize(const QObject& control, Statements&&... statements) {
  constexpr std::string_view procedure = "UserControl_Resize()";
  const auto trace = [&](std::string_view message) {
    if (isTracing())
      detail::trace({toCore(control.objectName()), {}}, procedure, message);
  };
  resumeNext(control, procedure, [&] { trace("Entering Method..."); });
  (resumeNext(control, procedure, std::forward<Statements>(statements)), ...);
  resumeNext(control, procedure, [&] { trace("Exiting Method..."); });
}

} // namespace imex
