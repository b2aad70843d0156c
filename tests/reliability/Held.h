#pragma once

#include "Import.h"
#include "allocations.h"

#include <cstddef>
#include <fstream>
#include <limits>

#include <unistd.h>

namespace imex::test {

/// How many imports one process makes.
inline constexpr int kImports = 1000;

/// Each answer leaves one column name in the catalogue, on purpose: 32 bytes in a list that doubles.
inline constexpr long kBytesOfAnImport = 64;

/// How much more memory the system may have given the process after them. The sanitizers keep what was freed.
#ifdef __SANITIZE_ADDRESS__
inline constexpr long kMostGrowth = std::numeric_limits<long>::max();
#else
inline constexpr long kMostGrowth = 1024L * 1024;
#endif

inline long residentBytes() {
  long total = 0;
  long resident = 0;
  std::ifstream("/proc/self/statm") >> total >> resident;
  return resident * ::sysconf(_SC_PAGESIZE);
}

/// What the process holds; memory as the program's own operator new counts it.
struct Held {
  long blocks = allocations.liveBlocks;
  long bytes = allocations.liveBytes;
  long resident = residentBytes();
  std::size_t descriptors = openDescriptors();
};

} // namespace imex::test
