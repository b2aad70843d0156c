#include "failingLibraries.h"

#include "allocations.h"

#include <atomic>
#include <cstddef>
#include <cstdlib>
#include <cstring>
#include <stdexcept>

#include <curl/curl.h>
#include <pugixml.hpp>

extern "C" {

// The linker puts the second one in the place of the program's calls, and gives the library's own the first name.
void* __real_realloc(void* block, std::size_t size);

void* __wrap_realloc(void* block, std::size_t size) {
  return imex::test::isAllocationToFail(imex::test::Allocator::realloc) ? nullptr : __real_realloc(block, size);
}
}

namespace imex::test {

namespace {

// --- pugixml --------------------------------------------------------------------------------------------------------

void* allocateForPugi(std::size_t size) {
  void* const block = isAllocationToFail(Allocator::pugixml) ? nullptr : std::malloc(size);
  allocations.liveBlocks += block == nullptr ? 0 : 1;
  return block;
}

void releaseForPugi(void* block) {
  allocations.liveBlocks -= block == nullptr ? 0 : 1;
  std::free(block);
}

// --- libcurl --------------------------------------------------------------------------------------------------------

std::atomic<long> curlBlocks = 0;
bool isCurlToFail() {
  return isAllocationToFail(Allocator::curl);
}

void* counted(void* block) {
  curlBlocks += block == nullptr ? 0 : 1;
  return block;
}

void* allocate(std::size_t size) {
  return isCurlToFail() ? nullptr : counted(std::malloc(size));
}

void* allocateZeroed(std::size_t count, std::size_t size) {
  return isCurlToFail() ? nullptr : counted(std::calloc(count, size));
}

void* reallocate(void* block, std::size_t size) {
  if (isCurlToFail())
    return nullptr;
  void* const moved = __real_realloc(block, size);
  return block == nullptr ? counted(moved) : moved;
}

char* duplicate(const char* text) {
  const std::size_t size = std::strlen(text) + 1;
  void* const block = allocate(size);
  return block == nullptr ? nullptr : static_cast<char*>(std::memcpy(block, text, size));
}

void release(void* block) {
  curlBlocks -= block == nullptr ? 0 : 1;
  std::free(block);
}

} // namespace

void makeLibrariesFail() {
  pugi::set_memory_management_functions(allocateForPugi, releaseForPugi);
  if (curl_global_init_mem(CURL_GLOBAL_DEFAULT, allocate, release, reallocate, duplicate, allocateZeroed) != CURLE_OK)
    throw std::runtime_error("libcurl takes no memory functions");
}

long liveBlocksOfCurl() {
  return curlBlocks;
}

} // namespace imex::test
