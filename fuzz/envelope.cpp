#include "harness/fuzz.h"
#include "platform/soap/PugiSoapEnvelope.h"

#include <string>
#include <vector>

// Bytes are a SOAP message or a clear error, in each encoding. The texts of a message, and the bytes themselves, put
// into a message of our own, serialised and parsed again, are the same texts. A comment in front changes neither names
// nor texts nor the error, however a plain message is read.

namespace {

using namespace imex;

constexpr std::int32_t kBadArgument = 5;
constexpr std::int32_t kNotSoap = 1005;
constexpr std::int32_t kFault = 1006;
constexpr std::int32_t kUnsupportedText = 1008;

/// A message as it was read, or the error that it is.
struct Message {
  std::vector<std::string> names;
  std::vector<std::string> texts;
  std::int32_t error = 0;
  std::string fault = {}; ///< the description, of a fault alone

  bool operator==(const Message&) const = default;
};

void collect(host::SoapNode& node, Message& message) {
  message.names.emplace_back(node.name());
  message.texts.push_back(node.text());
  std::size_t children = 0;
  node.forEachChild([&](host::SoapNode& child) {
    ++children;
    fuzz::require(node.child(child.name()) != nullptr, "a child is found by its name");
    collect(child, message);
  });
  fuzz::require(children == node.count(), "the children are counted");
}

Message messageOf(std::string_view bytes, std::string_view encoding) {
  Message message;
  try {
    platform::PugiSoapEnvelope envelope;
    envelope.parse(bytes, encoding);
    collect(envelope.parameters(), message);
  } catch (const RuntimeError& error) {
    fuzz::require(error.number() == kNotSoap || error.number() == kFault, "it is no message, or a fault");
    message.error = error.number();
    message.fault = error.number() == kFault ? error.description() : std::string();
  }
  return message;
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
  fuzz::require(messageOf(bytes, "UTF-8") == messageOf(commented, "UTF-8"), "a comment changes nothing");
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
  for (const std::string_view encoding : {"", "UTF-8", "windows-1252", "UTF-16"}) {
    const Message message = messageOf(bytes, encoding);
    fuzz::require(platform::isSoapFault(bytes, encoding) == (message.error == kFault), "a fault is known as one");
    sendAndReceive(message.texts);
  }
  checkComment(bytes);
  sendAndReceive({std::string(bytes)});
  platform::PugiSoapEnvelope named;
  fuzz::unless({kBadArgument, kUnsupportedText},
               [&] { return &named.parameters().create(bytes, bytes, bytes, bytes, bytes); });
  return 0;
}
