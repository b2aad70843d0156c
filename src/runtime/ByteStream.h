#pragma once

#include "runtime/export.h"

#include <cstddef>
#include <string_view>

namespace imex {

/// Bytes to read, in order. Errors are RuntimeErrors (57 where nothing better fits).
class IMEX_EXPORT ByteSource {
 public:
  virtual ~ByteSource() = default;

  /// Reads up to `size` bytes into `buffer` and returns how many there were; 0 only at the end.
  virtual std::size_t read(char* buffer, std::size_t size) = 0;

  /// Goes back to the first byte.
  virtual void rewind() = 0;
};

/// A place to write bytes to, in order. Destroying it closes it and hides an error of the closing.
class IMEX_EXPORT ByteSink {
 public:
  virtual ~ByteSink() = default;

  /// Writes all of `bytes`. Error 61 where there is no room, 57 where nothing better fits.
  virtual void write(std::string_view bytes) = 0;

  /// Closes the place and reports what that brings to light. Nothing is written afterwards.
  virtual void close() = 0;
};

} // namespace imex
