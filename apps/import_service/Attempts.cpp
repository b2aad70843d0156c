#include "import_service/Attempts.h"

#include <algorithm>
#include <chrono>
#include <random>
#include <thread>

namespace imex::import_service {

namespace {

std::chrono::milliseconds restBehind(int attempt) {
  thread_local std::minstd_rand random(std::random_device{}());
  const int greatest = std::min(10 << (attempt - 1), 1'000);
  return std::chrono::milliseconds(std::uniform_int_distribution<int>(0, greatest)(random));
}

} // namespace

bool Attempts::restForAnother() {
  if (++m_made >= kGreatestNumber)
    return false;
  std::this_thread::sleep_for(restBehind(m_made));
  return true;
}

} // namespace imex::import_service
