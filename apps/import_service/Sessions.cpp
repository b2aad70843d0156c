#include "import_service/Sessions.h"

#include "import_service/StoreError.h"

// The library's package announces bindings for Boost types but does not bring Boost; nothing here uses them.
#include <soci/soci-config.h>
#undef SOCI_HAVE_BOOST
#include <soci/soci.h>

#include <utility>

namespace imex::import_service {

Sessions::Sessions(const StoreUrl& url, std::chrono::milliseconds patience)
    : m_url(url), m_dialect(dialectOf(url)), m_patience(patience) {}

Sessions::~Sessions() = default;

Sessions::Lease Sessions::lease() {
  std::unique_ptr<soci::session> session = takeIdle();
  const bool isFresh = session == nullptr;
  try {
    if (isFresh)
      session = open();
  } catch (const std::exception&) {
    giveBack(nullptr);
    throw;
  }
  return {*this, std::move(session), isFresh};
}

/// Null where a new one is to be opened; its place is then taken already.
std::unique_ptr<soci::session> Sessions::takeIdle() {
  std::unique_lock lock(m_mutex);
  if (!m_isFree.wait_for(lock, m_patience, [this] { return m_leased < m_dialect.greatestSessions; }))
    throw StoreError("every connection to the database is in use");
  ++m_leased;
  if (m_idle.empty())
    return nullptr;
  std::unique_ptr<soci::session> session = std::move(m_idle.back());
  m_idle.pop_back();
  return session;
}

void Sessions::giveBack(std::unique_ptr<soci::session> session) {
  {
    const std::lock_guard lock(m_mutex);
    --m_leased;
    if (session)
      m_idle.push_back(std::move(session));
  }
  m_isFree.notify_one();
}

std::unique_ptr<soci::session> Sessions::open() const {
  try {
    auto session = std::make_unique<soci::session>(m_dialect.factory, m_dialect.connection);
    for (const std::string& setting : m_dialect.settings)
      *session << setting;
    return session;
  } catch (const soci::soci_error& error) {
    const std::string message = m_url.withoutPassword(m_dialect.messageOf(error));
    if (m_dialect.isServed)
      throw StoreUnreachable(m_url.shown + " cannot be reached (" + message + ')');
    throw StoreError(message);
  }
}

void Sessions::raise(const soci::soci_error& error) const {
  const std::string message = m_url.withoutPassword(m_dialect.messageOf(error));
  switch (m_dialect.troubleOf(error)) {
  case Trouble::lost:
    throw StoreUnreachable(m_url.shown + " cannot be reached any more (" + message + ')');
  case Trouble::conflict:
    throw StoreConflict(message);
  case Trouble::failure:
    break;
  }
  throw StoreError(message);
}

Sessions::Lease::Lease(Sessions& sessions, std::unique_ptr<soci::session> session, bool isFresh)
    : m_sessions(&sessions), m_session(std::move(session)), m_isFresh(isFresh) {}

Sessions::Lease::Lease(Lease&& other) noexcept
    : m_sessions(std::exchange(other.m_sessions, nullptr)), m_session(std::move(other.m_session)),
      m_isFresh(other.m_isFresh), m_isSpoiled(other.m_isSpoiled) {}

Sessions::Lease::~Lease() {
  if (m_sessions == nullptr)
    return;
  if (m_isSpoiled)
    m_session.reset();
  m_sessions->giveBack(std::move(m_session));
}

bool Sessions::Lease::noteFailure(const soci::soci_error& error) {
  const Trouble trouble = m_sessions->dialect().troubleOf(error);
  if (trouble != Trouble::conflict)
    spoil();
  return trouble == Trouble::lost && !m_isFresh;
}

} // namespace imex::import_service
