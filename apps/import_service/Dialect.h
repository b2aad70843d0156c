#pragma once

#include "import_service/StoreUrl.h"

#include <soci/error.h>

#include <cstddef>
#include <string>
#include <vector>

namespace soci {
class backend_factory;
}

namespace imex::import_service {

/// What an error of the database means for the work that met it.
enum class Trouble {
  failure,  ///< it would fail again
  conflict, ///< somebody else's work stood in the way; the transaction is undone and may be tried again
  lost,     ///< the connection is gone
};

/// What differs from one database system to the next. All other statements are common to them.
struct Dialect {
  const soci::backend_factory& factory;
  std::string connection;            ///< as the library takes it; may hold a password
  std::vector<std::string> settings; ///< run once on each new connection
  std::string begin;                 ///< starts a transaction that writes
  std::string beAlone;          ///< run behind `begin`: waits until no other transaction writes, and keeps others out
  std::size_t greatestSessions; ///< connections at the same time
  bool isServed;                ///< by a process of its own, to which one may connect anew
  Trouble (*troubleOf)(const soci::soci_error& error);
  std::string (*messageOf)(const soci::soci_error& error); ///< the database's own words, on one line
};

/// The dialect of the database that a URL names.
Dialect dialectOf(const StoreUrl& url);

} // namespace imex::import_service
