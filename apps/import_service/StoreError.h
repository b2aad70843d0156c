#pragma once

#include <stdexcept>

namespace imex::import_service {

/// The database failed. The text is the database's own; what was not committed is not stored.
class StoreError : public std::runtime_error {
 public:
  using std::runtime_error::runtime_error;
};

/// Somebody else wrote the same rows at the same time, and this transaction is undone. Another attempt may succeed.
class StoreConflict : public StoreError {
 public:
  using StoreError::StoreError;
};

/// The database cannot be connected to, or no longer. The text names its address, without a password, and the reason.
class StoreUnreachable : public StoreError {
 public:
  using StoreError::StoreError;
};

/// The connection was lost during a commit: the file may be stored, as a whole, or not at all.
class StoreUncertain : public StoreError {
 public:
  using StoreError::StoreError;
};

} // namespace imex::import_service
