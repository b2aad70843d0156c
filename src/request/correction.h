#pragma once

#include "runtime/Collection.h"

#include <string>

namespace imex {

/// The question whether the user wants to correct the file, behind the findings. Ten findings or more are not listed.
std::string correctionQuestion(const Strings& errors);

} // namespace imex
