#include "allocations.h"

#include <cstdlib>
#include <new>

#include <malloc.h>

// The operators of a program whose memory fails on demand and is counted. All others of the library call these.

namespace {

using imex::test::allocations;

void* counted(void* block) {
  if (block == nullptr)
    throw std::bad_alloc();
  ++allocations.liveBlocks;
  allocations.liveBytes += static_cast<long>(malloc_usable_size(block));
  return block;
}

void release(void* block) noexcept {
  if (block == nullptr)
    return;
  --allocations.liveBlocks;
  allocations.liveBytes -= static_cast<long>(malloc_usable_size(block));
  std::free(block);
}

} // namespace

void* operator new(std::size_t size) {
  if (imex::test::isAllocationToFail(imex::test::Allocator::operatorNew))
    throw std::bad_alloc();
  return counted(std::malloc(size == 0 ? 1 : size));
}

void* operator new(std::size_t size, std::align_val_t alignment) {
  if (imex::test::isAllocationToFail(imex::test::Allocator::operatorNew))
    throw std::bad_alloc();
  const auto step = static_cast<std::size_t>(alignment);
  return counted(std::aligned_alloc(step, (size + step - 1) / step * step));
}

void operator delete(void* block) noexcept {
  release(block);
}
void operator delete(void* block, std::size_t) noexcept {
  release(block);
}
void operator delete(void* block, std::align_val_t) noexcept {
  release(block);
}
void operator delete(void* block, std::size_t, std::align_val_t) noexcept {
  release(block);
}
