#include "records/ImExReply.h"

#include "module/properties.h"
#include "runtime/text.h"

#include <charconv>
#include <string_view>
#include <system_error>
#include <utility>

namespace imex {

namespace {

constexpr std::string_view kSource = "ImExReply";

std::string textOf(host::SoapNode& parent, std::string_view name) {
  const host::SoapNode* node = parent.child(name);
  return node != nullptr ? node->text() : std::string();
}

Boolean booleanOf(host::SoapNode& parent, std::string_view name) {
  const std::string text = textOf(parent, name);
  const std::string_view word = trimmed(text);
  if (word == "true" || word == "1") // how a service mostly writes it
    return true;
  if (word == "false" || word == "0")
    return false;
  if (equalsIgnoringCase(word, "true"))
    return true;
  if (equalsIgnoringCase(word, "false"))
    return false;
  throw RuntimeError(ErrorNumber::typeMismatch, kSource);
}

Integer integerOf(host::SoapNode& parent, std::string_view name) {
  // The service writes plain digits; the user's locale has no say in them.
  const std::string text = textOf(parent, name);
  const std::string_view digits = trimmed(text);
  long long number = 0;
  const auto [end, error] = std::from_chars(digits.data(), digits.data() + digits.size(), number);
  if (error == std::errc::result_out_of_range)
    throw RuntimeError(ErrorNumber::overflow, kSource);
  if (error != std::errc() || end != digits.data() + digits.size())
    throw RuntimeError(ErrorNumber::typeMismatch, kSource);
  return number;
}

} // namespace

Boolean ImExReply::IsSuccessful() const {
  return readTraced(kSource, "IsSuccessful", m_isSuccessful);
}

void ImExReply::IsSuccessful(Boolean value) {
  writeTraced(kSource, "IsSuccessful", m_isSuccessful, value);
}

Boolean ImExReply::hasErrors() const {
  return readTraced(kSource, "hasErrors", m_hasErrors);
}

void ImExReply::hasErrors(Boolean value) {
  writeTraced(kSource, "hasErrors", m_hasErrors, value);
}

Boolean ImExReply::hasWarnings() const {
  return readTraced(kSource, "hasWarnings", m_hasWarnings);
}

void ImExReply::hasWarnings(Boolean value) {
  writeTraced(kSource, "hasWarnings", m_hasWarnings, value);
}

std::string ImExReply::reply() const {
  return readTraced(kSource, "reply", m_reply);
}

void ImExReply::reply(std::string value) {
  writeTraced(kSource, "reply", m_reply, std::move(value));
}

ImExFormatsPtr ImExReply::ImExFormats() {
  if (!cImExFormats)
    cImExFormats = std::make_shared<Collection<ImExFormatPtr>>();
  return cImExFormats;
}

void ImExReply::processReply(host::SoapNode& aReply) {
  traced(
      {kSource, "processReply"},
      [&] {
        reply(textOf(aReply, "reply"));
        hasErrors(booleanOf(aReply, "hasErrors"));
        hasWarnings(booleanOf(aReply, "hasWarnings"));
        intTotalErrorsAndWarnings = 0;
        if (host::SoapNode* results = aReply.child("importExportResultBean"))
          results->forEachChild([&](host::SoapNode& result) { addResult(result); });
      },
      Reraise{});
}

void ImExReply::addResult(host::SoapNode& result) {
  auto format = std::make_shared<ImExFormat>();
  format->ActionSuccessful(booleanOf(result, "isIuccessful"));
  format->Line(textOf(result, "line"));
  format->LineNumber(integerOf(result, "lineNumber"));
  if (host::SoapNode* errors = result.child("errors")) {
    errors->forEachChild([&](host::SoapNode& text) {
      format->addError(text.text());
      ++intTotalErrorsAndWarnings;
    });
  }
  if (host::SoapNode* warnings = result.child("warnings")) {
    warnings->forEachChild([&](host::SoapNode& text) {
      format->addWarning(text.text());
      ++intTotalErrorsAndWarnings;
    });
  }
  ImExFormats()->add(std::move(format));
}

} // namespace imex
