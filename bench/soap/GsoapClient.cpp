#include "soap/GsoapClient.h"

#include "import.nsmap"
#include "soapH.h"

namespace imex::bench {

namespace {

char* text(const char* constant) {
  return const_cast<char*>(constant); // what the generated code writes it does not change
}

} // namespace

bool postWithGsoap(const std::string& address, const std::vector<char*>& lines) {
  // A tree without shared parts, so that no look-up of pointers costs time; texts are UTF-8 already.
  soap* context = soap_new1(SOAP_IO_CHUNK | SOAP_XML_TREE | SOAP_C_UTFSTRING);
  Parameter parameter;
  parameter.IMPORTEXPORTWRAPPER.LINES.__sizeLINE = static_cast<int>(lines.size());
  parameter.IMPORTEXPORTWRAPPER.LINES.LINE = const_cast<char**>(lines.data());
  Information& information = parameter.IMPORTEXPORTWRAPPER.REQUESTINFORMATION;
  information.IMPORTEXPORT = text("IMPORT");
  information.DATATYPE = text("CUSTOMER");
  information.SCHEDULE = text("INSTANT");
  information.DATAORIGIN = text("AGENT");
  information.DELIMITER = text("TAB");
  information.USERNAME = text("Ann Agent");
  information.ALLOWWARNINGS = text("TRUE");
  information.ALLOWTRUNCATION = text("FALSE");
  char* result = nullptr;
  const int code =
      soap_call_ns1__importCustomersInstant(context, address.c_str(), "urn:ImportExportService", parameter, &result);
  soap_destroy(context);
  soap_end(context);
  soap_free(context);
  return code == SOAP_OK;
}

} // namespace imex::bench
