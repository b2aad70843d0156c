#pragma once

#include <functional>
#include <utility>
#include <vector>

namespace imex {

/// A synchronous event. raise() calls the handlers in the order in which they were connected, on the caller's thread;
/// an error in a handler ends the raising and reaches whoever raised it. A by-reference argument is declared as a
/// reference type: all handlers then see one and the same object.
template <class... Args>
class Event {
 public:
  /// What is called when the event is raised.
  using Handler = std::function<void(Args...)>;

  /// Whether anything listens. What only a handler would see need not be made where none does.
  bool hasHandlers() const { return !m_handlers.empty(); }

  /// Adds a handler behind those that are there. It stays for the life of the event.
  void connect(Handler handler) { m_handlers.push_back(std::move(handler)); }

  /// Calls every handler with these arguments.
  void raise(Args... args) const {
    // A copy, so that a handler may connect another one.
    const std::vector<Handler> handlers = m_handlers;
    for (const Handler& handler : handlers)
      handler(args...);
  }

 private:
  std::vector<Handler> m_handlers;
};

} // namespace imex
