#pragma once

#include <nlohmann/json_fwd.hpp>

#include <string>

namespace imex::cli {

/// The object as the programs' JSON output: indented by two, with a line end behind it. Bytes that are no valid text
/// become U+FFFD, and every hidden character of a text is written as "\uXXXX" (hiddenCharacters.h).
std::string jsonText(const nlohmann::ordered_json& object);

} // namespace imex::cli
