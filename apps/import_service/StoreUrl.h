#pragma once

#include <string>
#include <string_view>

namespace imex::import_service {

/// Where the rows are kept.
struct StoreUrl {
  /// The database systems that the store knows.
  enum class System { sqlite };

  System system = System::sqlite;
  std::string database; ///< SQLite: the path of the file, or ":memory:"

  /// Reads "sqlite://PATH" or "sqlite://:memory:". A StartError (usage) says what a text that is neither should be.
  static StoreUrl parse(std::string_view text);
};

} // namespace imex::import_service
