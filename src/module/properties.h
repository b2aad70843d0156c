#pragma once

#include "module/tracing.h"

#include <string_view>
#include <utility>

namespace imex {

// The accessors of records and of the request: traced; an error is recorded, a read gives the value all the same and a
// write leaves what was there.

template <class T>
T readTraced(std::string_view source, std::string_view property, const T& value) {
  return traced(
      {source, property}, [&] { return value; }, [&](const CaughtError&) { return value; });
}

template <class T>
void writeTraced(std::string_view source, std::string_view property, T& place, T value) {
  traced(
      {source, property}, [&] { place = std::move(value); }, Ignore{});
}

} // namespace imex
