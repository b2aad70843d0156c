#pragma once

#include <chrono>
#include <cstddef>

namespace imex::import_service {

/// What the server lets its clients take of it.
struct Limits {
  /// A longer body is answered with the status 413 and not kept.
  std::size_t body = 256UL * 1024 * 1024;

  /// All bodies that are being received or judged, together. What would go beyond is answered with the status 503.
  std::size_t allBodies = 1024UL * 1024 * 1024;

  /// The request line and the headers. More is answered with the status 400, and the connection is closed.
  std::size_t head = 64UL * 1024;

  /// Connections at the same time. The next one is answered with the status 503 and closed.
  std::size_t connections = 128;

  /// A request's head must be there, and an answer begin to be taken, in this time.
  std::chrono::milliseconds patience{30'000};

  /// A body, and an answer, may take longer than that by a second for this many bytes. Who is slower is cut off.
  std::size_t leastBytesPerSecond = 16UL * 1024;
};

} // namespace imex::import_service
