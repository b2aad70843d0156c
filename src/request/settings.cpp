#include "request/ImExRequest.h"

#include "host/Application.h"
#include "host/Services.h"
#include "module/ImExModule.h"
#include "module/properties.h"
#include "module/tracing.h"

#include <utility>

namespace imex {

namespace {

constexpr std::string_view kSource = "ImExRequest";

} // namespace

std::string ImExRequest::formatKey() {
  std::string type = DataType();
  return type + DataOrigin();
}

void ImExRequest::setTabCount() {
  traced(
      {kSource, "setTabCount"},
      [&] {
        const std::string key = m_dataType + m_dataOrigin;
        if (!ImExModule::isFormatCounted(key))
          throw RuntimeError(ErrorNumber::invalidProcedureCall, kSource);
        tabCount(ImExModule::getFormatColumnCount(key));
      },
      Ignore{});
}

void ImExRequest::DataType(std::string value) {
  m_dataType = std::move(value);
  setTabCount();
}

std::string ImExRequest::DataOrigin() {
  setTabCount();
  return m_dataOrigin;
}

void ImExRequest::Delimiter(std::string value) {
  m_delimiter = std::move(value);
  if (m_delimiter == "TAB")
    m_delimiterAscii = int{'\t'};
  if (m_delimiter == "PIPE")
    m_delimiterAscii = int{'|'};
}

Integer ImExRequest::tabCount() const {
  return readTraced(kSource, "tabCount", m_tabCount);
}

void ImExRequest::tabCount(Integer value) {
  writeTraced(kSource, "tabCount", m_tabCount, value);
}

std::string ImExRequest::Directory() const {
  return readTraced(kSource, "Directory", m_directory);
}

void ImExRequest::Directory(std::string value) {
  writeTraced(kSource, "Directory", m_directory, std::move(value));
}

Integer ImExRequest::rowCount() const {
  return readTraced(kSource, "rowCount", m_rowCount);
}

void ImExRequest::rowCount(Integer value) {
  writeTraced(kSource, "rowCount", m_rowCount, value);
}

std::string ImExRequest::FormatFileName() {
  return traced(
      {kSource, "FormatFileName"},
      [&] {
        const std::string directory = host::required(host::services().application).path();
        const std::string origin = DataOrigin();
        return directory + "\\docs\\FORMAT" + origin + DataType() + ".dat";
      },
      Ignore{});
}

Integer ImExRequest::DelimiterAscii() const {
  return readTraced(kSource, "DelimiterAscii", m_delimiterAscii);
}

} // namespace imex
