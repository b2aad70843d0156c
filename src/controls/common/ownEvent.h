#pragma once

#include <functional>

namespace imex {

/// Runs `action` at once, as an event of its own. An error that leaves it is met by the application's notify() there
/// and then, and does not unwind the code of Qt's that is delivering a click: that is built without exceptions and
/// would be left in the middle. Where notify() lets it through, the error reaches the caller.
void runAsEvent(const std::function<void()>& action);

} // namespace imex
