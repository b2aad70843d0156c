#pragma once

#include "import_service/StoreUrl.h"

#include <memory>

#include <string>
#include <vector>

namespace imex::import_service::test {

/// An empty database for a store, and a connection to it beside the store's own, so that a test sees what the database
/// sees. Every failure fails the running test. It goes away with the object.
class TestStore {
 public:
  using System = StoreUrl::System;

  static std::unique_ptr<TestStore> make(System system);

  virtual ~TestStore() = default;

  /// What the program is given as --store.
  virtual std::string url() const = 0;

  /// Runs a statement and returns its rows, each a list of its values as text.
  virtual std::vector<std::vector<std::string>> run(const std::string& sql) = 0;

  /// From now on a row with this key cannot be stored; the database says "no room".
  virtual void refuseKey(const std::string& key) = 0;
};

/// "sqlite" or "postgresql", in the names of tests.
std::string nameOf(TestStore::System system);

} // namespace imex::import_service::test
