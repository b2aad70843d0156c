#include "runtime/TextFile.h"

#include <algorithm>
#include <cstring>
#include <utility>

namespace imex {

namespace {

constexpr std::size_t kBufferSize = 64UL * 1024;

} // namespace

TextReader::TextReader(std::unique_ptr<ByteSource> source) : m_source(std::move(source)), m_buffer(kBufferSize) {
  if (hasMark())
    m_encoding = Encoding::utf8WithMark;
  m_source->rewind();
  if (m_encoding)
    skip(kUtf8Mark.size()); // the file may have become shorter since
}

bool TextReader::hasMark() {
  std::size_t size = 0;
  while (size < kUtf8Mark.size()) {
    const std::size_t count = m_source->read(m_buffer.data() + size, m_buffer.size() - size);
    if (count == 0)
      break;
    size += count;
  }
  return std::string_view(m_buffer.data(), size).starts_with(kUtf8Mark);
}

/// Reads `count` bytes and leaves them out.
void TextReader::skip(std::size_t count) {
  std::vector<char> bytes(std::min(count, kBufferSize));
  while (count > 0) {
    const std::size_t read = m_source->read(bytes.data(), std::min(count, bytes.size()));
    if (read == 0)
      return;
    count -= read;
  }
}

Encoding TextReader::encoding() {
  if (!m_encoding)
    findEncoding({});
  return *m_encoding;
}

/// Finds the encoding where it matters for the first time. `bytes` are the last that were read, those before them are
/// ASCII.
void TextReader::judge(std::string_view bytes) {
  if (!m_encoding && !isAscii(bytes))
    findEncoding(bytes);
}

/// Reads on to the end, or to where the encoding is clear, and comes back.
void TextReader::findEncoding(std::string_view bytes) {
  Utf8Validator validator;
  std::vector<char> ahead(kBufferSize);
  std::size_t count = 0;
  bool isValid = validator.feed(bytes);
  while (isValid && (count = m_source->read(ahead.data(), ahead.size())) > 0)
    isValid = validator.feed({ahead.data(), count});
  m_source->rewind();
  skip(m_read);
  m_encoding = validator.isComplete() ? Encoding::utf8 : Encoding::windows1252;
}

/// Reads more bytes behind those in the buffer. False at the end of the source.
bool TextReader::fill() {
  char* const place = m_buffer.data() + m_end;
  const std::size_t count = m_source->read(place, m_buffer.size() - m_end);
  m_end += count;
  m_read += count;
  judge({place, count});
  if (count == 0 && !m_encoding)
    m_encoding = Encoding::utf8; // all of it was ASCII
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
  if (takeWholeLine(raw))
    return true;
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
  m_begin = end ? *end + kLineBreak.size() : m_end;
  return end || !raw.empty();
}

bool TextReader::readOtherLine(std::string_view& line) {
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
  m_buffer.reserve(2 * kBufferSize);
  if (encoding == Encoding::utf8WithMark)
    m_buffer = kUtf8Mark;
}

TextWriter::~TextWriter() {
  try {
    close();
  } catch (...) { // a destructor has nobody to tell
  }
}

void TextWriter::write(std::string_view text) {
  if (m_encoding == Encoding::windows1252)
    m_buffer += encode(text, m_encoding);
  else
    m_buffer += text;
  if (m_buffer.size() >= kBufferSize)
    flush();
}

void TextWriter::writeLine(std::string_view text) {
  write(text);
  write(kLineBreak);
}

/// Writes what fills the buffer and keeps the rest, so that all but the last bytes go out in pieces of one size.
void TextWriter::flush() {
  const std::size_t size = m_buffer.size() - m_buffer.size() % kBufferSize;
  try {
    m_sink->write(std::string_view(m_buffer).substr(0, size));
  } catch (...) {
    m_buffer.clear(); // what could not be written is not tried again
    throw;
  }
  m_buffer.erase(0, size);
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
