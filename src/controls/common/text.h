#pragma once

#include <QString>

#include <string>
#include <string_view>

namespace imex {

// Text is QString in the public interface of the controls and UTF-8 in the core.

inline QString toQt(std::string_view text) {
  return QString::fromUtf8(text.data(), static_cast<qsizetype>(text.size()));
}

inline std::string toCore(const QString& text) {
  return text.toStdString();
}

} // namespace imex
