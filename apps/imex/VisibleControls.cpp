#include "VisibleControls.h"

#include "hiddenCharacters.h"
#include "runtime/bytes.h"
#include "runtime/text.h"

#include <string>
#include <string_view>
#include <utility>

namespace imex::cli {

namespace {

constexpr char kCarriageReturn = '\r';

/// How many bytes the character has that begins with this one; 1 where none begins so.
std::size_t lengthFrom(char lead) {
  const auto byte = static_cast<unsigned char>(lead);
  if (byte >= 0xF0)
    return 4;
  if (byte >= 0xE0)
    return 3;
  return byte >= 0xC2 ? 2 : 1;
}

bool isContinuation(char byte) {
  return (static_cast<unsigned char>(byte) & 0xC0U) == 0x80U;
}

bool write(std::streambuf& to, std::string_view text) {
  return to.sputn(text.data(), static_cast<std::streamsize>(text.size())) == static_cast<std::streamsize>(text.size());
}

bool writeNumber(std::streambuf& to, char32_t number) {
  constexpr std::string_view kDigits = "0123456789abcdef";
  std::string text = number > 0xFF ? "\\u" : "\\x";
  for (unsigned shift = number > 0xFF ? 16 : 8; shift > 0; shift -= 4)
    text += kDigits[(number >> (shift - 4)) & 0xFU];
  return write(to, text);
}

/// Writes one character, or bytes that are none, so that it is seen.
bool writeVisibly(std::streambuf& to, std::string_view bytes) {
  const CodePoint character = codePointAt(bytes, 0);
  if (character.valid && character.bytes == bytes.size()) {
    const bool isHere = !isHidden(character.value) || bytes == "\t" || bytes == "\n";
    return isHere ? write(to, bytes) : writeNumber(to, character.value);
  }
  for (const char byte : bytes) {
    if (!writeNumber(to, static_cast<unsigned char>(byte)))
      return false;
  }
  return true;
}

/// Exchanges the buffer of a stream, which would forget that it has failed.
std::streambuf* exchangeBuffer(std::ostream& stream, std::streambuf* buffer) {
  const std::ios::iostate state = stream.rdstate();
  std::streambuf* old = stream.rdbuf(buffer);
  stream.setstate(state);
  return old;
}

} // namespace

VisibleControls::VisibleControls(std::ostream& stream) : m_stream(stream), m_next(exchangeBuffer(stream, this)) {}

VisibleControls::~VisibleControls() {
  const bool isWritten = flushHeld();
  exchangeBuffer(m_stream, m_next);
  if (!isWritten)
    m_stream.setstate(std::ios::badbit);
}

int VisibleControls::overflow(int byte) {
  if (traits_type::eq_int_type(byte, traits_type::eof()))
    return traits_type::not_eof(byte);
  return put(static_cast<char>(byte)) ? byte : traits_type::eof();
}

/// Most bytes need no look of their own.
std::streamsize VisibleControls::xsputn(const char* text, std::streamsize size) {
  const auto needsALook = [](auto c) { return (isControlOrNonAscii(c) & (c != '\t') & (c != '\n')) | (c == 0x7F); };
  const std::string_view all(text, static_cast<std::size_t>(size));
  for (std::size_t at = 0; at < all.size(); ++at) {
    const std::size_t plain = m_held.empty() ? findByte(all, needsALook, at) : at;
    if (plain > at && !write(*m_next, all.substr(at, plain - at)))
      return static_cast<std::streamsize>(at);
    at = plain;
    if (at < all.size() && !put(all[at]))
      return static_cast<std::streamsize>(at);
  }
  return size;
}

bool VisibleControls::put(char byte) {
  if (m_held.empty())
    return start(byte);
  if (m_held.front() == kCarriageReturn && byte == '\n') {
    m_held.clear();
    return write(*m_next, "\r\n");
  }
  if (m_held.front() == kCarriageReturn || !isContinuation(byte))
    return flushHeld() && start(byte);
  m_held += byte;
  return m_held.size() < lengthFrom(m_held.front()) || flushHeld();
}

bool VisibleControls::start(char byte) {
  m_held = byte;
  return byte == kCarriageReturn || lengthFrom(byte) > 1 || flushHeld();
}

bool VisibleControls::flushHeld() {
  if (m_held.empty())
    return true;
  const std::string held = std::exchange(m_held, {});
  return writeVisibly(*m_next, held);
}

/// A byte that is held stays so: what follows it decides.
int VisibleControls::sync() {
  return m_next->pubsync();
}

} // namespace imex::cli
