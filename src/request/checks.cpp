#include "request/ImExRequest.h"

#include "module/ImExModule.h"
#include "module/tracing.h"
#include "request/LineCheck.h"
#include "request/shared.h"
#include "runtime/text.h"

#include <array>
#include <memory>
#include <span>

namespace imex {

namespace {

constexpr std::string_view kSource = "ImExRequest";

/// A field that a row must have, by its position and its name in the message.
struct RequiredField {
  int position;
  std::string_view fragment;
};

constexpr std::array<RequiredField, 3> kProductFields = {{
    {1, "Catalog Number, "},
    {3, "Brand Name, "},
    {11, "Product Type, "},
}};

constexpr std::array<RequiredField, 7> kCustomerFields = {{
    {2, "Firm name, "},
    {3, "Address 1, "},
    {6, "City, "},
    {7, "State, "},
    {8, "Zip, "},
    {11, "Phone Number, "},
    {13, "Customer Type."},
}};

constexpr int kCustomerType = 13;

bool isMissing(const Strings& fields, int position) {
  return std::cmp_less(fields.count(), position) || fields.item(position).empty();
}

const Strings& given(const StringsPtr& fields) {
  if (!fields)
    throw RuntimeError(ErrorNumber::objectVariableNotSet, kSource);
  return *fields;
}

/// The message names every required field, whichever is missing.
void requireFields(const Strings& fields, std::span<const RequiredField> required, std::string_view records,
                   Strings& findings) {
  bool isComplete = true;
  std::string message = "The following fields are required when importing " + std::string(records) +
                        " using the agent format:" + std::string(kLineBreak);
  for (const RequiredField& field : required) {
    message += field.fragment;
    isComplete = isComplete && !isMissing(fields, field.position);
  }
  if (!isComplete)
    findings.add(message);
}

std::string wrongFieldCount(Integer expectedFields) {
  return "The file you are attempting to import is not properly delimited. It should contain " +
         toText(expectedFields) + " of your chosen delimiter in each row of the file." + std::string(kLineBreak) +
         "Opening the file within the editor and saving will correct the error.";
}

std::uint64_t bitsOf(std::span<const RequiredField> fields) {
  std::uint64_t bits = 0;
  for (const RequiredField& field : fields)
    bits |= std::uint64_t{1} << static_cast<unsigned>(field.position);
  return bits;
}

} // namespace

std::uint64_t requiredFields(std::string_view dataType, std::string_view dataOrigin) {
  if (dataOrigin != "AGENT")
    return 0;
  if (dataType == "CUSTOMER")
    return bitsOf(kCustomerFields);
  return dataType == "PRODUCT" ? bitsOf(kProductFields) : 0;
}

StringsPtr ImExRequest::simpleClientValidation(std::string_view line, Integer delimiterAscii, Integer expectedFields) {
  const auto findings = std::make_shared<Strings>();
  traced(
      {kSource, "simpleClientValidation"},
      [&] {
        if (line.empty())
          return;
        m_fields = ImExModule::Parse(line, delimiterAscii);
        if (std::cmp_equal(m_fields->count(), int{expectedFields}))
          checkFields(*findings);
        else
          findings->add(wrongFieldCount(expectedFields));
      },
      ShowBox{"Unable to validate the format of the file being imported."});
  return findings;
}

/// The checks of the format beyond the number of fields. Invoices and commissions have none.
void ImExRequest::checkFields(Strings& findings) {
  const auto addAll = [&](const StringsPtr& more) {
    for (const std::string& finding : *more)
      findings.add(finding);
  };
  const std::string origin = DataOrigin();
  if (origin != "AGENT")
    return;
  if (m_dataType == "CUSTOMER")
    addAll(validateAgentCustomer(m_fields));
  else if (m_dataType == "PRODUCT")
    addAll(validateAgentProduct(m_fields));
}

StringsPtr ImExRequest::validateAgentProduct(const StringsPtr& fields) {
  const auto findings = std::make_shared<Strings>();
  traced(
      {kSource, "validateAgentProduct"}, [&] { requireFields(given(fields), kProductFields, "products", *findings); },
      Ignore{});
  return findings;
}

StringsPtr ImExRequest::validateAgentCustomer(const StringsPtr& fields) {
  const auto findings = std::make_shared<Strings>();
  traced(
      {kSource, "validateAgentCustomer"},
      [&] {
        requireFields(given(fields), kCustomerFields, "customers", *findings);
        if (!findings->isEmpty())
          return;
        const std::string& type = fields->item(kCustomerType);
        if (isCentralizedAgent && (type == "d" || type == "D"))
          findings->add("Distributor import not allowed on Central Server." + std::string(kLineBreak) +
                        "Please contact Corvana Support for more Information.");
      },
      Ignore{});
  return findings;
}

Boolean ImExRequest::checkFileForEdit() {
  return traced(
      {kSource, "checkFileForEdit"},
      [&] {
        if (!ImExModule::checkFileExists(CheckedFileName())) {
          showNotice(kCannotOpenFile);
          throw LeaveEarly();
        }
        ImExModule::InputFile file(CheckedFileName());
        int count = 0;
        std::string_view line;
        while (file.readLine(line)) {
          if (count == Integer::kMax) {
            showNotice("The file you are attempting to edit exceeds the maximum size of lines (32,767). "
                       "Please edit the file and try again.");
            throw LeaveEarly();
          }
          ++count;
        }
        rowCount(count);
        return Boolean(true);
      },
      [](const CaughtError&) {
        // The file went bad between the test and its last line: the user hears the same as for one that is not there.
        showNotice(kCannotOpenFile);
        return Boolean(false);
      });
}

} // namespace imex
