#include "platform/soap/PugiSoapEnvelope.h"

#include "platform/soap/FlatAnswer.h"
#include "platform/soap/RequestMessage.h"
#include "platform/soap/TreeAnswer.h"
#include "platform/soap/errors.h"

#include <cstdint>
#include <utility>

namespace imex::platform {

namespace {

std::unique_ptr<Message> readAnswer(std::string data, std::string_view encoding) {
  if (auto answer = FlatAnswer::read(data, encoding))
    return answer;
  return std::make_unique<TreeAnswer>(data, encoding);
}

} // namespace

PugiSoapEnvelope::PugiSoapEnvelope() : m_message(std::make_unique<RequestMessage>()) {}

PugiSoapEnvelope::~PugiSoapEnvelope() = default;

void PugiSoapEnvelope::setEncodingStyle(std::string_view uri) {
  m_message->setEncodingStyle(uri);
}

void PugiSoapEnvelope::setMethod(std::string_view name, std::string_view space) {
  m_message->setMethod(name, space);
}

host::SoapNode& PugiSoapEnvelope::header() {
  return m_message->header();
}

host::SoapNode& PugiSoapEnvelope::parameters() {
  return m_message->method();
}

std::string PugiSoapEnvelope::serialise() const {
  return m_message->serialise();
}

void PugiSoapEnvelope::post(host::HttpTransport& transport, std::string_view endpoint) const {
  m_message->post(transport, endpoint);
}

void PugiSoapEnvelope::parse(std::string_view data, std::string_view encoding) {
  take(std::string(data), encoding);
}

void PugiSoapEnvelope::take(std::string data, std::string_view encoding) {
  m_message = std::make_unique<RequestMessage>(); // what is left where the answer is refused
  m_message = readAnswer(std::move(data), encoding);
}

host::SoapNode& PugiSoapEnvelope::parameter(std::size_t position) {
  return m_message->parameter(position);
}

bool isSoapFault(std::string_view data, std::string_view encoding) {
  try {
    PugiSoapEnvelope().parse(data, encoding);
  } catch (const RuntimeError& error) {
    if (error.is(ErrorNumber::outOfMemory)) // which says nothing about the answer
      throw;
    return error.number() == static_cast<std::int32_t>(SoapError::fault);
  }
  return false;
}

} // namespace imex::platform
