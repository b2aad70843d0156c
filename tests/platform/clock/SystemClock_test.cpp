#include "platform/clock/SystemClock.h"

#include <gtest/gtest.h>

#include <array>
#include <cstdlib>
#include <ctime>

namespace imex::platform {

namespace {

std::array<int, 5> fieldsOf(const host::LocalTime& time) {
  return {time.year, time.month, time.day, time.hour, time.minute};
}

/// The moment in a zone that is `hours` ahead of universal time.
std::array<int, 5> fieldsAhead(std::time_t seconds, int hours) {
  const std::time_t shifted = seconds + std::time_t{hours} * 3600;
  std::tm fields = {};
  ::gmtime_r(&shifted, &fields);
  return {fields.tm_year + 1900, fields.tm_mon + 1, fields.tm_mday, fields.tm_hour, fields.tm_min};
}

TEST(SystemClock, tellsTheTimeOfTheEnvironmentsZone) {
  // A zone's name counts hours westward.
  for (const auto& [zone, hours] : {std::pair{"UTC0", 0}, {"AAA-14", 14}, {"BBB12", -12}}) {
    ::setenv("TZ", zone, 1);
    ::tzset();
    const std::time_t before = std::time(nullptr);
    const auto now = fieldsOf(SystemClock().now());
    const std::time_t after = std::time(nullptr);
    EXPECT_TRUE(now == fieldsAhead(before, hours) || now == fieldsAhead(after, hours)) << zone;
  }
}

} // namespace

} // namespace imex::platform
