#pragma once

#include <string>
#include <string_view>

namespace imex::import_service {

/// Where the rows are kept.
struct StoreUrl {
  /// The database systems that the store knows.
  enum class System { sqlite, postgresql };

  System system = System::sqlite;
  std::string database; ///< SQLite: the path of the file, or ":memory:"; PostgreSQL: the URL that is connected to
  std::string shown;    ///< the URL as it may be shown: what shownAddress() leaves of it

  /// Reads "sqlite://PATH", "sqlite://:memory:" or "postgresql://USER@HOST:PORT/DATABASE" (also "postgres://…"), the
  /// latter with everything that PostgreSQL's own programs take in such a URL. Where its query part says nothing of
  /// them, ten seconds are allowed for connecting and thirty for a host that falls silent. A StartError (usage) says
  /// what a text that is none of these should be. An "@" anywhere but right before the host is refused so too:
  /// PostgreSQL would take a part of the password for the host, and name it in its messages.
  static StoreUrl parse(std::string_view text);

  /// `text` with "***" in place of every password that this URL holds.
  std::string withoutPassword(std::string text) const;
};

} // namespace imex::import_service
