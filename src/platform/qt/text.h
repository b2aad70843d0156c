#pragma once

#include <QString>

#include <string_view>

namespace imex::platform {

inline QString toQt(std::string_view text) {
  return QString::fromUtf8(text.data(), static_cast<qsizetype>(text.size()));
}

} // namespace imex::platform
