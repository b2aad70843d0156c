#pragma once

#include "runtime/Collection.h"

#include <string>
#include <vector>

namespace imex::test {

/// What trace lines, fields and messages are compared as.
using Texts = std::vector<std::string>;

/// The texts of a list, to compare it whole; "(nothing)" for a null one.
inline Texts texts(const StringsPtr& list) {
  return list ? Texts(list->begin(), list->end()) : Texts{"(nothing)"};
}

} // namespace imex::test
