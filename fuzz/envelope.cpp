#include "harness/fuzz.h"
#include "platform/soap/PugiSoapEnvelope.h"

#include <optional>
#include <string>
#include <vector>

// Bytes are a SOAP message or a clear error, in each encoding. The texts of a message, and the bytes themselves, put
// into a message of our own, serialised and parsed again, are the same texts. A comment in front changes nothing,
// however a plain message is read.

namespace {

using namespace imex;

constexpr std::int32_t kBadArgument = 5;
constexpr std::int32_t kNotSoap = 1005;
constexpr std::int32_t kFault = 1006;
constexpr std::int32_t kUnsupportedText = 1008;

void collect(host::SoapNode& node, std::vector<std::string>& texts) {
  texts.push_back(node.text());
  std::size_t children = 0;
  node.forEachChild([&](host::SoapNode& child) {
    ++children;
    fuzz::require(node.child(child.name()) != nullptr, "a child is found by its name");
    collect(child, texts);
  });
  fuzz::require(children == node.count(), "the children are counted");
}

/// The texts of a message; nothing where it is none.
std::optional<std::vector<std::string>> textsOf(std::string_view bytes, std::string_view encoding) {
  return fuzz::unless({kNotSoap, kFault}, [&] {
    platform::PugiSoapEnvelope envelope;
    envelope.parse(bytes, encoding);
    std::vector<std::string> texts;
    collect(envelope.parameters(), texts);
    return texts;
  });
}

/// A comment in front of the message, or behind its declaration, is not part of it.
void checkComment(std::string_view bytes) {
  const bool isDeclared = bytes.starts_with("<?xml");
  const std::size_t end = isDeclared ? bytes.find("?>") : 0;
  const bool isOfBytes = bytes.find('\0') == std::string_view::npos; // UTF-16 has no place for a comment of bytes
  if (end == std::string_view::npos || !isOfBytes || bytes.starts_with("\xEF\xBB\xBF"))
    return;
  std::string commented(bytes);
  commented.insert(isDeclared ? end + 2 : 0, "<!-- -->");
  fuzz::require(textsOf(bytes, "UTF-8") == textsOf(commented, "UTF-8"), "a comment changes nothing");
}

void sendAndReceive(const std::vector<std::string>& texts) {
  platform::PugiSoapEnvelope envelope;
  envelope.setMethod("method", "urn:space");
  std::vector<std::string> sent;
  for (const std::string& text : texts) {
    if (fuzz::unless({kUnsupportedText}, [&] { return &envelope.parameters().create("LINE", text, "", "", ""); }))
      sent.push_back(text);
  }
  const std::string bytes = envelope.serialise();
  platform::PugiSoapEnvelope received;
  received.parse(bytes, "");
  std::vector<std::string> arrived;
  received.parameters().forEachChild([&](host::SoapNode& line) { arrived.push_back(line.text()); });
  fuzz::require(arrived == sent, "the texts arrive");
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const std::string_view bytes = fuzz::text(data, size);
  for (const std::string_view encoding : {"", "UTF-8", "windows-1252", "UTF-16"})
    sendAndReceive(textsOf(bytes, encoding).value_or(std::vector<std::string>()));
  checkComment(bytes);
  sendAndReceive({std::string(bytes)});
  platform::PugiSoapEnvelope named;
  fuzz::unless({kBadArgument, kUnsupportedText},
               [&] { return &named.parameters().create(bytes, bytes, bytes, bytes, bytes); });
  return 0;
}
