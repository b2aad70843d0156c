#include "runtime/FileNumbers.h"

#include "runtime/RuntimeError.h"

#include <utility>

namespace imex {

namespace {

constexpr int kGreatestNumber = 511;
constexpr int kTooManyFiles = 67;

} // namespace

int FileNumbers::freeNumber() const {
  for (int number = 1; number <= kGreatestNumber; ++number) {
    if (!isOpen(number))
      return number;
  }
  throw RuntimeError(kTooManyFiles, "ImEx", "Too many files");
}

void FileNumbers::requireFree(int number) const {
  if (isOpen(number))
    throw RuntimeError(ErrorNumber::fileAlreadyOpen);
}

TextReader& FileNumbers::openForInput(int number, const OpenSource& open) {
  requireFree(number);
  return m_readers.emplace(number, TextReader(open())).first->second;
}

TextWriter& FileNumbers::openForOutput(int number, const OpenSink& open, Encoding encoding) {
  requireFree(number);
  return *m_writers.emplace(number, std::make_unique<TextWriter>(open(), encoding)).first->second;
}

void FileNumbers::close(int number) {
  m_readers.erase(number);
  if (auto writer = m_writers.extract(number))
    writer.mapped()->close();
}

void FileNumbers::closeAll() {
  m_readers.clear();
  m_writers.clear();
}

} // namespace imex
