#pragma once

namespace imex::import_service {

/// How often work is tried again that others stood in the way of, and how long it rests in between: a random time, so
/// that two that met do not meet again, of up to 10 ms, then 20, then 40, but never more than a second.
class Attempts {
 public:
  static constexpr int kGreatestNumber = 10;

  /// To be asked after each attempt that failed: rests and returns true, or returns false after the last one.
  bool restForAnother();

 private:
  int m_made = 0;
};

/// Runs `action(number)`, the number from 1, until it raises no `Conflict`. The last attempt's passes through, as does
/// everything else.
template <class Conflict, class Action>
auto attempt(const Action& action) {
  Attempts attempts;
  for (int number = 1;; ++number) {
    try {
      return action(number);
    } catch (const Conflict&) {
      if (!attempts.restForAnother())
        throw;
    }
  }
}

} // namespace imex::import_service
