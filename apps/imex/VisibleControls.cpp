#include "VisibleControls.h"

#include "runtime/bytes.h"

#include <array>
#include <string_view>

namespace imex::cli {

namespace {

constexpr unsigned char kCarriageReturn = '\r';
constexpr unsigned char kLeadOfLatin = 0xC2; // U+0080 to U+00BF follow it

bool isControl(unsigned char byte) {
  return (byte < 0x20 && byte != '\t' && byte != '\n') || byte == 0x7F;
}

bool isControlBehindLead(int byte) {
  return byte >= 0x80 && byte <= 0x9F;
}

bool isHeld(unsigned char byte) {
  return byte == kCarriageReturn || byte == kLeadOfLatin;
}

bool write(std::streambuf& to, std::string_view text) {
  return to.sputn(text.data(), static_cast<std::streamsize>(text.size())) == static_cast<std::streamsize>(text.size());
}

bool writeNumber(std::streambuf& to, unsigned char byte) {
  constexpr std::string_view kDigits = "0123456789abcdef";
  const std::array number = {'\\', 'x', kDigits[byte >> 4], kDigits[byte & 0xF]};
  return write(to, {number.data(), number.size()});
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
  return put(static_cast<unsigned char>(byte)) ? byte : traits_type::eof();
}

/// Most bytes need no look of their own.
std::streamsize VisibleControls::xsputn(const char* text, std::streamsize size) {
  const auto needsALook = [](auto c) { return (isControlOrNonAscii(c) & (c != '\t') & (c != '\n')) | (c == 0x7F); };
  const std::string_view all(text, static_cast<std::size_t>(size));
  for (std::size_t at = 0; at < all.size(); ++at) {
    const std::size_t plain = m_held == kNothing ? findByte(all, needsALook, at) : at;
    if (plain > at && !write(*m_next, all.substr(at, plain - at)))
      return static_cast<std::streamsize>(at);
    at = plain;
    if (at < all.size() && !put(static_cast<unsigned char>(all[at])))
      return static_cast<std::streamsize>(at);
  }
  return size;
}

bool VisibleControls::put(unsigned char byte) {
  if (m_held == kCarriageReturn && byte == '\n') {
    m_held = kNothing;
    return write(*m_next, "\r\n");
  }
  if (m_held == kLeadOfLatin && isControlBehindLead(byte)) {
    m_held = kNothing;
    return writeNumber(*m_next, byte);
  }
  if (!flushHeld())
    return false;
  if (isHeld(byte)) {
    m_held = byte;
    return true;
  }
  return isControl(byte) ? writeNumber(*m_next, byte) : m_next->sputc(static_cast<char>(byte)) != traits_type::eof();
}

bool VisibleControls::flushHeld() {
  if (m_held == kNothing)
    return true;
  const auto held = static_cast<unsigned char>(m_held);
  m_held = kNothing;
  return isControl(held) ? writeNumber(*m_next, held) : m_next->sputc(static_cast<char>(held)) != traits_type::eof();
}

/// A byte that is held stays so: what follows it decides.
int VisibleControls::sync() {
  return m_next->pubsync();
}

} // namespace imex::cli
