#include "records/ImExFormat.h"

#include "module/properties.h"
#include "runtime/text.h"

#include <algorithm>
#include <memory>
#include <string_view>
#include <utility>

namespace imex {

namespace {

constexpr std::string_view kSource = "ImExFormat";

StringsPtr& madeOnFirstUse(StringsPtr& list) {
  if (!list)
    list = std::make_shared<Strings>();
  return list;
}

} // namespace

Integer ImExFormat::LineNumber() const {
  return readTraced(kSource, "LineNumber", m_lineNumber);
}

void ImExFormat::LineNumber(Integer value) {
  writeTraced(kSource, "LineNumber", m_lineNumber, value);
}

std::string ImExFormat::Line() const {
  return readTraced(kSource, "Line", m_line);
}

void ImExFormat::Line(std::string value) {
  writeTraced(kSource, "Line", m_line, std::move(value));
  m_isLineAscii = isAscii(m_line);
}

StringsPtr ImExFormat::errors() {
  return madeOnFirstUse(cErrors);
}

StringsPtr ImExFormat::Warnings() {
  return madeOnFirstUse(cWarnings);
}

void ImExFormat::addWarning(std::string warning) {
  Warnings()->add(std::move(warning));
}

void ImExFormat::addError(std::string error) {
  errors()->add(std::move(error));
}

bool isAscii(const ImExFormat& format) {
  const auto areAscii = [](const StringsPtr& texts) {
    return !texts || std::all_of(texts->begin(), texts->end(), [](const std::string& text) { return isAscii(text); });
  };
  return format.m_isLineAscii && areAscii(format.cErrors) && areAscii(format.cWarnings);
}

Boolean ImExFormat::ActionSuccessful() const {
  return readTraced(kSource, "ActionSuccessful", m_actionSuccessful);
}

void ImExFormat::ActionSuccessful(const Boolean& value) {
  writeTraced(kSource, "ActionSuccessful", m_actionSuccessful, value);
}

} // namespace imex
