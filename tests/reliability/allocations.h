#pragma once

#include <cstddef>

namespace imex::test {

// Faults of memory. They happen in programs that are linked with failingNew.cpp, which puts its own operator new in the
// place of the library's; in others nothing fails, and a pause means nothing.

/// Who allocates. TextBuffer does it by realloc.
enum class Allocator { none, operatorNew, realloc, pugixml, curl };

/// What the operator new of a program goes by. One thread alone uses it.
struct Allocations {
  long count = 0;      ///< made since counting began, not counting those of a pause
  long failAt = 0;     ///< the one that fails, counted from 1; 0 for none
  bool failOn = false; ///< whether those behind it fail as well
  int pauses = 0;
  bool hasFailed = false;
  Allocator failed = Allocator::none; ///< whose the first one was that failed
  long liveBlocks = 0;                ///< that were not given back yet, of the whole program
  long liveBytes = 0;
};

inline thread_local Allocations allocations;

/// Counts an allocation that is about to be made. True where it is to fail.
inline bool isAllocationToFail(Allocator allocator) {
  if (allocations.pauses > 0 || allocations.failAt == 0)
    return false;
  const long number = ++allocations.count;
  const bool fails = number == allocations.failAt || (allocations.failOn && number > allocations.failAt);
  if (fails && !allocations.hasFailed)
    allocations.failed = allocator;
  allocations.hasFailed = allocations.hasFailed || fails;
  return fails;
}

/// No allocation fails or counts while it lives. What a test itself keeps is not what is tested.
class AllocationPause {
 public:
  AllocationPause() { ++allocations.pauses; }
  ~AllocationPause() { --allocations.pauses; }
  AllocationPause(const AllocationPause&) = delete;
  AllocationPause& operator=(const AllocationPause&) = delete;
};

/// Fails the allocation `number`, counted from 1, and with `failOn` all behind it, while it lives.
class FailingAllocation {
 public:
  explicit FailingAllocation(long number, bool failOn = false) {
    allocations.count = 0;
    allocations.failAt = number;
    allocations.failOn = failOn;
    allocations.hasFailed = false;
    allocations.failed = Allocator::none;
  }
  ~FailingAllocation() { allocations.failAt = 0; }
  FailingAllocation(const FailingAllocation&) = delete;
  FailingAllocation& operator=(const FailingAllocation&) = delete;
};

} // namespace imex::test
