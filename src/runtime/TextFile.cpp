#include "runtime/TextFile.h"

#include <algorithm>
#include <cstring>
#include <utility>

namespace imex {

namespace {

constexpr std::size_t kBufferSize = 64UL * 1024;
constexpr std::size_t kLineBreakSize = 2;

} // namespace

TextReader::TextReader(std::unique_ptr<ByteSource> source)
    : m_source(std::move(source)), m_buffer(kBufferSize), m_encoding(findEncoding()) {
  m_source->rewind();
  m_begin = m_end = 0;
  if (m_encoding == Encoding::utf8WithMark) {
    while (m_end < kUtf8Mark.size() && fill()) {
    }
    m_begin = std::min(kUtf8Mark.size(), m_end); // the file may have become shorter since
  }
}

Encoding TextReader::findEncoding() {
  Utf8Validator validator;
  std::string head;
  while (const std::size_t count = m_source->read(m_buffer.data(), m_buffer.size())) {
    const std::string_view bytes(m_buffer.data(), count);
    if (head.size() < kUtf8Mark.size())
      head.append(bytes.substr(0, kUtf8Mark.size() - head.size()));
    if (head == kUtf8Mark)
      return Encoding::utf8WithMark;
    if (!validator.feed(bytes)) // nor do the bytes begin with the mark, which is valid itself
      break;
  }
  return validator.isComplete() ? Encoding::utf8 : Encoding::windows1252;
}

/// Reads more bytes behind those in the buffer. False at the end of the source.
bool TextReader::fill() {
  const std::size_t count = m_source->read(m_buffer.data() + m_end, m_buffer.size() - m_end);
  m_end += count;
  return count > 0;
}

/// Where the CR LF of the line stands in the buffer, looked for from `searched` on. Where there is none yet, `searched`
/// becomes the place from which to go on once there are more bytes: a last CR is looked at again, because LF may
/// follow.
std::optional<std::size_t> TextReader::findLineEnd(std::size_t& searched) const {
  while (searched < m_end) {
    const void* found = std::memchr(m_buffer.data() + searched, '\r', m_end - searched);
    if (found == nullptr) {
      searched = m_end;
      break;
    }
    searched = static_cast<std::size_t>(static_cast<const char*>(found) - m_buffer.data());
    if (searched + 1 == m_end)
      break;
    if (m_buffer[searched + 1] == '\n')
      return searched;
    ++searched;
  }
  return std::nullopt;
}

/// Makes room behind the bytes of a line that has no end yet: moves them to the front, or, where they fill the buffer,
/// puts aside those up to `searched`.
void TextReader::makeRoom(std::size_t& searched) {
  if (m_begin == 0 && m_end < m_buffer.size())
    return;
  if (m_begin == 0) {
    m_long.append(m_buffer.data(), searched);
    m_begin = searched;
  }
  std::memmove(m_buffer.data(), m_buffer.data() + m_begin, m_end - m_begin);
  m_end -= m_begin;
  searched -= m_begin;
  m_begin = 0;
}

/// Takes the bytes of one line, still in the encoding of the file.
bool TextReader::takeLine(std::string_view& raw) {
  m_long.clear();
  std::size_t searched = m_begin;
  std::optional<std::size_t> end = findLineEnd(searched);
  while (!end) {
    makeRoom(searched);
    if (!fill())
      break;
    end = findLineEnd(searched);
  }
  raw = {m_buffer.data() + m_begin, end.value_or(m_end) - m_begin};
  if (!m_long.empty())
    raw = m_long.append(raw);
  m_begin = end ? *end + kLineBreakSize : m_end;
  return end || !raw.empty();
}

bool TextReader::readLine(std::string_view& line) {
  std::string_view raw;
  if (!takeLine(raw))
    return false;
  if (m_encoding != Encoding::windows1252) {
    line = raw;
    return true;
  }
  m_decoded.clear();
  appendWindows1252(m_decoded, raw);
  line = m_decoded;
  return true;
}

TextWriter::TextWriter(std::unique_ptr<ByteSink> sink, Encoding encoding)
    : m_sink(std::move(sink)), m_encoding(encoding) {
  if (encoding == Encoding::utf8WithMark)
    m_buffer = kUtf8Mark;
}

TextWriter::~TextWriter() {
  try {
    close();
  } catch (...) { // a destructor has nobody to tell
  }
}

void TextWriter::writeLine(std::string_view text) {
  if (m_encoding == Encoding::windows1252)
    m_buffer += encode(text, m_encoding);
  else
    m_buffer += text;
  m_buffer += "\r\n";
  if (m_buffer.size() >= kBufferSize)
    flush();
}

void TextWriter::flush() {
  const std::string bytes = std::exchange(m_buffer, {});
  if (!bytes.empty())
    m_sink->write(bytes);
}

void TextWriter::close() {
  if (!m_sink)
    return;
  const std::unique_ptr<ByteSink> sink = std::move(m_sink);
  const std::string bytes = std::exchange(m_buffer, {});
  if (!bytes.empty())
    sink->write(bytes);
  sink->close();
}

} // namespace imex
