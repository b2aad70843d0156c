#pragma once

#include "runtime/ByteStream.h"
#include "runtime/RuntimeError.h"

#include <algorithm>
#include <cstddef>
#include <limits>
#include <optional>
#include <string>
#include <string_view>
#include <utility>

namespace imex::test {

/// Bytes from memory, at most `chunk` of them a call.
class MemorySource : public ByteSource {
 public:
  explicit MemorySource(std::string bytes, std::size_t chunk = std::numeric_limits<std::size_t>::max())
      : m_bytes(std::move(bytes)), m_chunk(chunk) {}

  std::size_t read(char* buffer, std::size_t size) override {
    if (failAfter && (*failAfter)-- == 0)
      throw RuntimeError(ErrorNumber::deviceIoError);
    const std::size_t count = std::min({size, m_chunk, m_bytes.size() - m_position});
    m_bytes.copy(buffer, count, m_position);
    m_position += count;
    return count;
  }

  void rewind() override { m_position = 0; }

  std::optional<int> failAfter; ///< so many calls of read() succeed before one fails with error 57

 private:
  std::string m_bytes;
  std::size_t m_chunk;
  std::size_t m_position = 0;
};

/// Writes into a record that outlives it.
class MemorySink : public ByteSink {
 public:
  struct Record {
    std::string bytes;
    int closes = 0;
    std::optional<RuntimeError> writeError = {}; ///< raised instead of writing
    std::optional<RuntimeError> closeError = {}; ///< raised by the closing
  };

  explicit MemorySink(Record& record) : m_record(record) {}

  void write(std::string_view bytes) override {
    if (m_record.writeError)
      throw *m_record.writeError;
    m_record.bytes += bytes;
  }

  void close() override {
    ++m_record.closes;
    if (m_record.closeError)
      throw *m_record.closeError;
  }

 private:
  Record& m_record;
};

} // namespace imex::test
