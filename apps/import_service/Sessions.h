#pragma once

#include "import_service/Dialect.h"
#include "import_service/StoreUrl.h"

#include <chrono>
#include <condition_variable>
#include <cstddef>
#include <memory>
#include <mutex>
#include <vector>

namespace soci {
class session;
}

namespace imex::import_service {

/// The connections to one database: opened when they are needed, kept for the next, as many as the dialect allows.
/// Calls may come from any thread.
class Sessions {
 public:
  class Lease;

  /// Connects to nothing yet. `patience` is how long a lease is waited for.
  Sessions(const StoreUrl& url, std::chrono::milliseconds patience);
  ~Sessions();

  const Dialect& dialect() const { return m_dialect; }

  /// A connection of one's own for a while. A StoreUnreachable where the database cannot be connected to, a StoreError
  /// where it can but is of no use, or where all connections stay in use.
  Lease lease();

  /// Runs `action(lease)`, with a fresh connection where one that was kept turns out to be lost. It must do nothing
  /// that lasts before the connection has proved itself. What the library raises passes through.
  template <class Action>
  auto onLease(const Action& action);

  /// Raises the StoreError that stands for an error of the library.
  [[noreturn]] void raise(const soci::soci_error& error) const;

 private:
  std::unique_ptr<soci::session> open() const;
  std::unique_ptr<soci::session> takeIdle();
  void giveBack(std::unique_ptr<soci::session> session);

  StoreUrl m_url;
  Dialect m_dialect;
  std::chrono::milliseconds m_patience;
  std::mutex m_mutex;
  std::condition_variable m_isFree;
  std::size_t m_leased = 0;
  std::vector<std::unique_ptr<soci::session>> m_idle;
};

/// Gives the connection back when it goes.
class Sessions::Lease {
 public:
  Lease(Sessions& sessions, std::unique_ptr<soci::session> session, bool isFresh);
  Lease(Lease&& other) noexcept;
  ~Lease();

  soci::session& session() { return *m_session; }

  /// Looks at what the connection has failed with: one that may be unusable is not given back but closed. Returns
  /// whether it was lost while it was kept, so that another one may do better.
  bool noteFailure(const soci::soci_error& error);

  /// Closes the connection when the lease ends, where one may connect anew.
  void spoil() { m_isSpoiled = m_sessions->dialect().isServed; }

 private:
  Sessions* m_sessions;
  std::unique_ptr<soci::session> m_session;
  bool m_isFresh;
  bool m_isSpoiled = false;
};

template <class Action>
auto Sessions::onLease(const Action& action) {
  for (;;) {
    Lease own = lease();
    try {
      return action(own);
    } catch (const soci::soci_error& error) {
      if (!own.noteFailure(error))
        throw;
    }
  }
}

} // namespace imex::import_service
