#include "controls/ImExFileEdit/ImExFileEdit.h"

namespace imex {

StringsPtr ImExFileEdit::HeaderCollection() const {
  return hostCalled("HeaderCollection", [&] { return m_headerCollection; });
}

void ImExFileEdit::HeaderCollection(const StringsPtr& value) {
  hostCalled("HeaderCollection", [&] { m_headerCollection = value; });
}

Integer ImExFileEdit::NumberColumns() const {
  return hostCalled("NumberColumns", [&] { return m_numberColumns; });
}

void ImExFileEdit::NumberColumns(Integer value) {
  hostCalled("NumberColumns", [&] { m_numberColumns = value; });
}

Integer ImExFileEdit::DelimiterAscii() const {
  return hostCalled("DelimiterAscii", [&] { return m_delimiterAscii; });
}

void ImExFileEdit::DelimiterAscii(Integer value) {
  hostCalled("DelimiterAscii", [&] { m_delimiterAscii = value; });
}

Integer ImExFileEdit::NumberRows() const {
  return hostCalled("NumberRows", [&] { return m_numberRows; });
}

void ImExFileEdit::NumberRows(Integer value) {
  hostCalled("NumberRows", [&] { m_numberRows = value; });
}

QString ImExFileEdit::fileName() const {
  return hostCalled("fileName", [&] { return toQt(m_fileName); });
}

void ImExFileEdit::fileName(const QString& value) {
  hostCalled("fileName", [&] { m_fileName = toCore(value); });
}

} // namespace imex
